#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace vellum::test {

/// A fresh folder under the temporary folder, removed with everything in it at the end of scope.
class TempDir {
public:
    TempDir()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "vellum-test-XXXXXX").string();
        if (mkdtemp(pattern.data()))
            m_path = pattern;
    }
    ~TempDir()
    {
        std::error_code ignored;
        if (!m_path.empty())
            std::filesystem::remove_all(m_path, ignored);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;

    /// Empty when the folder could not be made.
    const std::string &path() const { return m_path; }
    /// A path inside the folder.
    std::string file(const std::string &name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

} // namespace vellum::test
