#pragma once

// In-memory files and tables for the browser tests.

#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellum::test {

struct TestColumn {
    std::string name;
    std::string type = "Text";
};

/// A cell of a test row: text, or nullopt for the null marker.
using TestCell = std::optional<std::string>;

/// Adds a table with the given columns and rows to a file (which becomes active).
inline TOrbMDBTable *addTestTable(TOrbMDBFile &file, const std::string &name, const std::vector<TestColumn> &columns,
                                  const std::vector<std::vector<TestCell>> &rows)
{
    auto table = std::make_unique<TOrbMDBTable>();
    table->setName(name);
    for (const TestColumn &definition : columns) {
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(definition.name);
        column->setDataType(definition.type);
        table->addColumn(std::move(column));
    }
    TableStore &store = table->mutableStore();
    for (const auto &row : rows) {
        store.beginRow();
        for (const TestCell &cell : row) {
            if (cell)
                store.appendText(cell->data(), cell->size());
            else
                store.appendNull();
        }
        store.endRow();
    }
    file.setActive(true);
    return file.addTable(std::move(table));
}

/// A file object with a name and folder, not backed by a file on disk.
inline std::unique_ptr<TOrbMDBFile> makeTestFile(const std::string &name, const std::string &folder = "/tmp")
{
    auto file = std::make_unique<TOrbMDBFile>();
    file->setName(name);
    file->setPath(folder);
    file->setFileExtension("mdb");
    return file;
}

/// A one-column table whose rows hold the given cells.
inline TOrbMDBTable *addColumnTable(TOrbMDBFile &file, const std::string &name, const std::vector<TestCell> &cells)
{
    std::vector<std::vector<TestCell>> rows;
    for (const TestCell &cell : cells)
        rows.push_back({cell});
    return addTestTable(file, name, {{"value"}}, rows);
}

/// A fresh temporary folder as XDG_DATA_HOME (where the recent-documents list lives) for the
/// lifetime of the object; the previous value comes back afterwards.
class ScopedDataHome {
public:
    ScopedDataHome()
    {
        char pattern[] = "/tmp/vellum-data-XXXXXX";
        if (mkdtemp(pattern))
            m_folder = pattern;
        if (const char *old = std::getenv("XDG_DATA_HOME"))
            m_saved = old;
        setenv("XDG_DATA_HOME", m_folder.c_str(), 1);
    }
    ~ScopedDataHome()
    {
        if (m_saved)
            setenv("XDG_DATA_HOME", m_saved->c_str(), 1);
        else
            unsetenv("XDG_DATA_HOME");
        if (!m_folder.empty())
            std::filesystem::remove_all(m_folder);
    }
    ScopedDataHome(const ScopedDataHome &) = delete;
    ScopedDataHome &operator=(const ScopedDataHome &) = delete;
    /// The folder ("" when it could not be made).
    const std::string &folder() const { return m_folder; }

private:
    std::string m_folder;
    std::optional<std::string> m_saved;
};

} // namespace vellum::test
