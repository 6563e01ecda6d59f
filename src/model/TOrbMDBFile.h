#pragma once

#include "model/LossReport.h"
#include "model/OpenFailure.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBLinkedTable.h"
#include "model/TOrbMDBObject.h"
#include "model/TOrbMDBQuery.h"
#include "model/TOrbMDBTable.h"
#include "util/dates.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {

class FileReader;

/// Receives the progress of an open and may cancel it. Called on the thread that opens.
class LoadObserver {
public:
    virtual ~LoadObserver() = default;
    /// A table has begun loading (its position among the kept tables and their count, if known).
    virtual void tableStarted(const std::string &name, std::size_t index, std::size_t count) = 0;
    /// Rows loaded so far in the whole file.
    virtual void rowsLoaded(std::uint64_t totalRows) = 0;
    /// The row count the kept tables' definitions give, once the catalog is read: what
    /// `rowsLoaded` should reach (a damaged file may give more or fewer).
    virtual void rowsExpected(std::uint64_t totalRows) { (void)totalRows; }
    /// Polled often; answering true stops the open, which then fails.
    virtual bool shouldCancel() = 0;
};

/// One Access database file of the application's list. `open` reads the whole database into
/// memory (kept tables with columns, rows and indexes, and the relationships) through the
/// reader it is given; browsing and export then work on the model alone.
class TOrbMDBFile : public TOrbMDBObject {
public:
    TOrbMDBFile();
    ~TOrbMDBFile() override;

    /// Fills folder, name, extension, size and dates from a path in the file system.
    static std::unique_ptr<TOrbMDBFile> fromPath(const std::string &path);

    const std::string &path() const { return m_path; }
    void setPath(std::string path) { m_path = std::move(path); }
    const std::string &fileExtension() const { return m_ext; }
    void setFileExtension(std::string ext) { m_ext = std::move(ext); }
    std::uint64_t size() const { return m_size; }
    void setSize(std::uint64_t size) { m_size = size; }
    TimePoint createDate() const { return m_createDate; }
    void setCreateDate(TimePoint t) { m_createDate = t; }
    TimePoint modifyDate() const { return m_modifyDate; }
    void setModifyDate(TimePoint t) { m_modifyDate = t; }
    TimePoint lastOpenDate() const { return m_lastOpenDate; }
    void setLastOpenDate(TimePoint t) { m_lastOpenDate = t; }
    bool active() const { return m_fActive; }
    void setActive(bool active) { m_fActive = active; }

    /// "%@/%@.%@" of folder, name and extension.
    std::string fullPath() const;
    /// The path to read the file at: folder, name and, when there is one, "." and the
    /// extension (a file without an extension, or named ".mdb", has no trailing dot).
    std::string openPath() const;

    const std::vector<std::unique_ptr<TOrbMDBTable>> &tables() const { return m_tables; }
    TOrbMDBTable *addTable(std::unique_ptr<TOrbMDBTable> table);
    TOrbMDBTable *tableNamed(std::string_view name) const;
    const std::vector<std::unique_ptr<TOrbMDBForeignKey>> &allForeignKeys() const { return m_allForeignKeys; }
    TOrbMDBForeignKey *addForeignKey(std::unique_ptr<TOrbMDBForeignKey> key);
    /// Tables of other databases this one links to, sorted by name once loaded.
    const std::vector<std::unique_ptr<TOrbMDBLinkedTable>> &linkedTables() const { return m_linkedTables; }
    TOrbMDBLinkedTable *addLinkedTable(std::unique_ptr<TOrbMDBLinkedTable> table);
    /// Saved queries (the hidden "~sq_" ones included), sorted by name once loaded.
    const std::vector<std::unique_ptr<TOrbMDBQuery>> &queries() const { return m_queries; }
    TOrbMDBQuery *addQuery(std::unique_ptr<TOrbMDBQuery> query);

    /// Loads the whole file with `reader`; true when it is (now) loaded. An active file answers
    /// true at once; after a failed read the file holds no tables and no relationships.
    [[nodiscard]] bool open(FileReader &reader, LoadObserver *observer = nullptr);
    /// Why the last `open` failed; `None` after a successful one.
    OpenFailure openFailure() const { return m_openFailure; }
    /// Set by the reader that fails to read this file.
    void setOpenFailure(OpenFailure failure) { m_openFailure = failure; }
    /// What the last `open` could not read (in the order found); empty when it read everything.
    const std::vector<LossReport> &losses() const { return m_losses; }
    /// Set by the reader.
    void addLoss(LossReport loss) { m_losses.push_back(std::move(loss)); }
    /// A Jet 3/4 file whose header holds a database password (it opens without it); set by the reader.
    bool databasePasswordSet() const { return m_databasePasswordSet; }
    void setDatabasePasswordSet(bool set) { m_databasePasswordSet = set; }
    /// Unloads tables, relationships, linked tables and queries; the file stays in the list and can be opened again.
    void close();

    /// The relationships whose referencing table is exactly `tableName`, in list order;
    /// nullopt when the file has no relationships at all.
    std::optional<std::vector<const TOrbMDBForeignKey *>> foreignKeysForTable(std::string_view tableName) const;
    TOrbMDBForeignKey *findForeignKeyByName(std::string_view name) const;

    /// By name, then by folder.
    int compareByName(const TOrbMDBObject &other) const override;
    /// Sorting with it puts the most recently opened file first.
    int compareByLastOpenDate(const TOrbMDBFile &other) const;

    /// Sorts tables, relationships, linked tables and queries by name (the last step of loading).
    void sortLoadedLists();

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    std::string m_path;
    std::string m_ext;
    std::uint64_t m_size = 0;
    TimePoint m_createDate;
    TimePoint m_modifyDate;
    TimePoint m_lastOpenDate;
    std::vector<std::unique_ptr<TOrbMDBTable>> m_tables;
    std::vector<std::unique_ptr<TOrbMDBForeignKey>> m_allForeignKeys;
    std::vector<std::unique_ptr<TOrbMDBLinkedTable>> m_linkedTables;
    std::vector<std::unique_ptr<TOrbMDBQuery>> m_queries;
    bool m_fActive = false;
    OpenFailure m_openFailure = OpenFailure::None;
    std::vector<LossReport> m_losses;
    bool m_databasePasswordSet = false;
};

} // namespace vellum
