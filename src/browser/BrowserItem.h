#pragma once

namespace vellum {

class TOrbMDBFile;
class TOrbMDBLinkedTable;
class TOrbMDBQuery;
class TOrbMDBTable;

/// What a row of the file list or an item of the jump bar stands for: a file, a table, a linked
/// table, a saved query, or nothing. No pointer is owned; at most one is set.
struct BrowserItem {
    TOrbMDBFile *file = nullptr;               ///< set for a file item only
    TOrbMDBTable *table = nullptr;             ///< set for a table item only
    TOrbMDBLinkedTable *linkedTable = nullptr; ///< set for a linked-table item only
    TOrbMDBQuery *query = nullptr;             ///< set for a query item only

    static BrowserItem ofFile(TOrbMDBFile *f) { return {f, nullptr, nullptr, nullptr}; }
    static BrowserItem ofTable(TOrbMDBTable *t) { return {nullptr, t, nullptr, nullptr}; }
    static BrowserItem ofLinkedTable(TOrbMDBLinkedTable *l) { return {nullptr, nullptr, l, nullptr}; }
    static BrowserItem ofQuery(TOrbMDBQuery *q) { return {nullptr, nullptr, nullptr, q}; }
    bool isFile() const { return file != nullptr; }
    bool isTable() const { return table != nullptr; }
    bool isLinkedTable() const { return linkedTable != nullptr; }
    bool isQuery() const { return query != nullptr; }
    bool isNone() const { return !file && !table && !linkedTable && !query; }
    bool operator==(const BrowserItem &other) const = default;
};

} // namespace vellum
