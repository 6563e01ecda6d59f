#pragma once

namespace vellum {

class TOrbMDBFile;
class TOrbMDBTable;

/// What a row of the file list or an item of the jump bar stands for: a file, a table, or
/// nothing. Neither pointer is owned.
struct BrowserItem {
    TOrbMDBFile *file = nullptr;   ///< set for a file item only
    TOrbMDBTable *table = nullptr; ///< set for a table item only

    static BrowserItem ofFile(TOrbMDBFile *f) { return {f, nullptr}; }
    static BrowserItem ofTable(TOrbMDBTable *t) { return {nullptr, t}; }
    bool isFile() const { return file != nullptr; }
    bool isTable() const { return table != nullptr; }
    bool isNone() const { return !file && !table; }
    bool operator==(const BrowserItem &other) const = default;
};

} // namespace vellum
