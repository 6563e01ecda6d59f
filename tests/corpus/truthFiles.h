#pragma once

// The truth sidecars of the real-world corpus (../shared/corpus-truth), shared by the corpus
// suites.

#include "support/Fixtures.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace vellum::test {

/// Every sidecar (`*.json`) of ../shared/corpus-truth, in name order; empty when it is absent.
inline std::vector<std::filesystem::path> truthFilePaths()
{
    std::vector<std::filesystem::path> paths;
    const std::string dir = sharedPath("corpus-truth");
    if (dir.empty())
        return paths;
    for (const auto &entry : std::filesystem::directory_iterator(dir))
        if (entry.path().extension() == ".json")
            paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace vellum::test
