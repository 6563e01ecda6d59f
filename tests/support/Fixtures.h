#pragma once

#include "mdb/InProcessReader.h"
#include "model/TOrbMDBFile.h"
#include "model/hex.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace vellum::test {

/// A file of tests/data.
inline std::string fixturePath(const std::string &name)
{
    return std::string(VELLUM_TEST_DATA) + "/" + name;
}

/// A path below ../shared (testdata/…, corpus/…); empty when ../shared is absent.
inline std::string sharedPath(const std::string &relative)
{
    const std::string path = std::string(VELLUM_SHARED_DIR) + "/" + relative;
    return std::filesystem::exists(path) ? path : std::string();
}

/// The JSON sidecar describing a fixture's exact content.
inline nlohmann::json loadSidecar(const std::string &path)
{
    std::ifstream in(path + ".json");
    return nlohmann::json::parse(in, nullptr, /*allow_exceptions=*/false);
}

/// Opens a database file in this process; nullptr when it cannot be opened.
inline std::unique_ptr<TOrbMDBFile> openInProcess(const std::string &path, const LoadOptions &options = {},
                                                  const std::string &password = {})
{
    auto file = TOrbMDBFile::fromPath(path);
    InProcessReader reader(options);
    reader.setPassword(password);
    if (!file->open(reader, nullptr))
        return nullptr;
    return file;
}

/// Bytes as lower-case hex, the form the sidecars and the corpus truth give them in.
inline std::string lowerHex(std::string_view bytes)
{
    std::string out(2 * bytes.size(), '\0');
    toHex(out.data(), out.size(), reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    return out;
}

/// Vellum's date text "MM/DD/YYYY HH:MM:SS[.fffffff]" as "YYYY-MM-DD<separator>HH:MM:SS[…]",
/// the order the sidecars and the corpus truth write; "unparsed:TEXT" for anything else.
inline std::string isoFromMonthFirst(std::string_view text, char separator)
{
    if (text.size() < 19 || text[2] != '/' || text[5] != '/' || text[10] != ' ')
        return "unparsed:" + std::string(text);
    return std::string(text.substr(6, 4)) + "-" + std::string(text.substr(0, 2)) + "-" +
           std::string(text.substr(3, 2)) + separator + std::string(text.substr(11));
}

/// The sidecar's table entry of that name.
inline const nlohmann::json *sidecarTable(const nlohmann::json &sidecar, const std::string &name)
{
    for (const auto &table : sidecar["tables"])
        if (table["name"] == name)
            return &table;
    return nullptr;
}

} // namespace vellum::test
