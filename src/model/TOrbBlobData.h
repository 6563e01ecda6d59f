#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vellum {

/// The cell value of a non-empty OLE Object field: the decoded payload, the file-name extension
/// found for it ("" when unknown), whether it is a picture, and on request a temporary file
/// holding it so that the user can open or drag the content.
class TOrbBlobData {
public:
    /// Decides whether bytes are a picture the program can show. Must be safe to call from any
    /// thread.
    using ImageProbe = bool (*)(const std::uint8_t *data, std::size_t length);

    /// Keeps the bytes; a null extension becomes "". The extension is taken as UTF-8 text.
    TOrbBlobData(std::vector<std::uint8_t> data, const char *fileExtension);

    /// A Package object that holds only a link to a file: no payload, the path it names.
    static std::unique_ptr<TOrbBlobData> linkTo(std::string path);

    TOrbBlobData(const TOrbBlobData &) = delete;
    TOrbBlobData &operator=(const TOrbBlobData &) = delete;

    const std::vector<std::uint8_t> &data() const { return m_data; }
    const std::string &fileExtension() const { return m_fileExtension; }
    /// The file a link-only Package names; "" for every blob with a payload.
    const std::string &linkPath() const { return m_linkPath; }
    /// The label a Package object gives its file (usually the file's name, "report.pdf"); ""
    /// for every other blob.
    const std::string &packageLabel() const { return m_packageLabel; }
    /// Sets the Package label (while the value is decoded or received, before it is shared).
    void setPackageLabel(std::string label) { m_packageLabel = std::move(label); }
    /// True for a Package that holds only a link: its cell is the null marker, described by
    /// "link to PATH".
    bool isLinkOnly() const { return !m_linkPath.empty(); }

    /// True when the installed image probe accepts the payload; asked once per blob, then
    /// remembered.
    bool isImage() const;

    /// Grid text: ".EXT [SIZE]" with an extension, "[SIZE]" without, SIZE as
    /// formatComputerFileSize gives it (".bmp [3 KB]"); "link to PATH" for a link-only Package.
    std::string cellDescription() const;

    /// The payload as UTF-8 text when it is text (byte-order marks for UTF-32 and UTF-16, else
    /// UTF-8 or ISO Latin-1), "[NON-TEXTUAL DATA]" otherwise, "" for no data; "link to PATH"
    /// for a link-only Package.
    std::string description() const;

    /// Path of a temporary file "Vellum-XXXXXXXXX[.EXT]" in the temporary folder holding the
    /// payload, created on the first successful call and kept afterwards; "" when it cannot be
    /// created (a later call tries again). The file is not removed by this class. Main thread.
    std::string createTempFile() const;
    /// The path createTempFile made, "" before.
    const std::string &tmpPath() const { return m_tmpPath; }

    /// Installs the probe behind isImage(); nullptr restores hasImageSignature. Install it
    /// before files are opened: blobs that already answered keep their answer.
    static void setImageProbe(ImageProbe probe);
    /// The built-in probe: true for the signatures of BMP, GIF, JPEG, PNG, TIFF and ICO files.
    static bool hasImageSignature(const std::uint8_t *data, std::size_t length);

private:
    std::vector<std::uint8_t> m_data;
    std::string m_fileExtension;
    std::string m_linkPath;
    std::string m_packageLabel;
    mutable std::string m_tmpPath;
    mutable std::atomic<signed char> m_isImage{-1}; ///< -1 not asked yet, else 0 or 1
};

} // namespace vellum
