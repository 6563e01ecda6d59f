#pragma once

// In-memory tables and files for the export tests.

#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellum::test {

/// A cell of a test row: text, null (nullopt) or a blob.
struct TestCell {
    TestCell(const char *text) : text(text) {}
    TestCell(std::nullopt_t) {}
    static TestCell blob()
    {
        TestCell cell(std::nullopt);
        cell.isBlob = true;
        return cell;
    }
    std::optional<std::string> text;
    bool isBlob = false;
};

/// A loaded table with columns (name, type name) and rows.
inline std::unique_ptr<TOrbMDBTable> makeTable(const std::string &name,
                                               const std::vector<std::pair<std::string, std::string>> &columns,
                                               const std::vector<std::vector<TestCell>> &rows)
{
    auto table = std::make_unique<TOrbMDBTable>();
    table->setName(name);
    for (const auto &[columnName, type] : columns) {
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(columnName);
        column->setDataType(type);
        table->addColumn(std::move(column));
    }
    TableStore &store = table->mutableStore();
    for (const auto &row : rows) {
        store.beginRow();
        for (const TestCell &cell : row) {
            if (cell.isBlob)
                store.appendBlob(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>{1, 2, 3}, "bin"));
            else if (cell.text)
                store.appendText(cell.text->data(), cell.text->size());
            else
                store.appendNull();
        }
        store.endRow();
    }
    return table;
}

/// A table of one Long Integer column "n" holding 1..rowCount.
inline std::unique_ptr<TOrbMDBTable> makeNumberTable(const std::string &name, std::size_t rowCount)
{
    std::vector<std::vector<TestCell>> rows;
    std::vector<std::string> texts;
    texts.reserve(rowCount);
    for (std::size_t i = 1; i <= rowCount; ++i)
        texts.push_back(std::to_string(i));
    for (const std::string &text : texts)
        rows.push_back({TestCell(text.c_str())});
    return makeTable(name, {{"n", "Long Integer"}}, rows);
}

/// An open (active) file named `name` holding the given tables.
inline std::unique_ptr<TOrbMDBFile> makeFile(const std::string &name, std::vector<std::unique_ptr<TOrbMDBTable>> tables)
{
    auto file = std::make_unique<TOrbMDBFile>();
    file->setName(name);
    for (auto &table : tables)
        file->addTable(std::move(table));
    file->setActive(true);
    return file;
}

} // namespace vellum::test
