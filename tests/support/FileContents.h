#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace vellum::test {

/// The bytes of a file; empty when it cannot be read.
inline std::string fileContents(const std::filesystem::path &path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    return content.str();
}

} // namespace vellum::test
