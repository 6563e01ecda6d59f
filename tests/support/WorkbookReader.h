#pragma once

// Reads workbooks back with independent readers (python3-xlrd for .xls, python3-openpyxl for
// .xlsx) through tests/scripts/read_workbook.py, which prints what they see as JSON.

#include "support/RunProcess.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace vellum::test {

/// A Python 3 that has both readers, or empty. /usr/bin/python3 first: the system's modules
/// live there even when another python3 comes first on PATH.
inline const std::string &pythonWithWorkbookReaders()
{
    static const std::string found = [] {
        std::vector<std::string> candidates = {"/usr/bin/python3"};
        std::istringstream path(std::getenv("PATH") ? std::getenv("PATH") : "");
        for (std::string dir; std::getline(path, dir, ':');)
            if (!dir.empty())
                candidates.push_back(dir + "/python3");
        for (const std::string &python : candidates) {
            if (!std::filesystem::exists(python))
                continue;
            if (runProcess({python, "-c", "import xlrd, openpyxl"}, 60).exitStatus == 0)
                return python;
        }
        return std::string();
    }();
    return found;
}

#define VELLUM_REQUIRE_WORKBOOK_READERS()                                                                              \
    do {                                                                                                               \
        if (::vellum::test::pythonWithWorkbookReaders().empty())                                                       \
            GTEST_SKIP() << "python3 with xlrd and openpyxl is missing (Debian: python3-xlrd python3-openpyxl)";       \
    } while (0)

/// One cell as the reader sees it: type "text", "number", "boolean", "date" (ISO text) or
/// "blank", the value, and the number format of a number or date cell ("" for General).
struct ReadCell {
    std::string type;
    nlohmann::json value;
    std::string format;
};

struct ReadSheet {
    std::string name;
    std::map<std::pair<int, int>, ReadCell> cells; ///< by (row, column)
    int rowCount() const { return cells.empty() ? 0 : cells.rbegin()->first.first + 1; }
    const ReadCell *at(int row, int col) const
    {
        auto it = cells.find({row, col});
        return it == cells.end() ? nullptr : &it->second;
    }
};

struct ReadWorkbook {
    bool ok = false;
    std::string error;                 ///< the reader's complaint when !ok
    std::vector<std::string> warnings; ///< what the reader logged while reading
    std::vector<ReadSheet> sheets;
    nlohmann::json streams; ///< for --streams
};

inline ReadWorkbook runWorkbookReader(std::vector<std::string> args)
{
    ReadWorkbook book;
    args.insert(args.begin(),
                {pythonWithWorkbookReaders(), std::string(VELLUM_SOURCE_DIR) + "/tests/scripts/read_workbook.py"});
    const ProcessResult result = runProcess(args, 600);
    if (result.exitStatus != 0) {
        book.error = result.err.empty() ? "reader failed" : result.err;
        return book;
    }
    const nlohmann::json json = nlohmann::json::parse(result.out, nullptr, false);
    if (json.is_discarded()) {
        book.error = "reader printed no JSON";
        return book;
    }
    for (const auto &w : json["warnings"])
        book.warnings.push_back(w.get<std::string>());
    if (json.contains("streams"))
        book.streams = json["streams"];
    if (json.contains("sheets")) {
        for (const auto &s : json["sheets"]) {
            ReadSheet sheet;
            sheet.name = s["name"].get<std::string>();
            for (const auto &c : s["cells"])
                sheet.cells[{c[0].get<int>(), c[1].get<int>()}] =
                    ReadCell{c[2].get<std::string>(), c[3], c.size() > 4 ? c[4].get<std::string>() : std::string()};
            book.sheets.push_back(std::move(sheet));
        }
    }
    book.ok = true;
    return book;
}

/// The sheets and cells of an .xls or .xlsx file.
inline ReadWorkbook readWorkbook(const std::string &path)
{
    return runWorkbookReader({path});
}

/// The streams of a compound file: name → {"size", "sha256"}.
inline ReadWorkbook readCompoundStreams(const std::string &path)
{
    return runWorkbookReader({"--streams", path});
}

} // namespace vellum::test
