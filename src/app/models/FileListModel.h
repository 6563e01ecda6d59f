#pragma once

#include "browser/BrowserItem.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <vector>

namespace vellum {

class BrowserController;
class TOrbMDBFile;
class TOrbMDBLinkedTable;
class TOrbMDBQuery;
class TOrbMDBTable;

/// The file list's outline: files at the top level (the controller's `fileEntities`); below an
/// open file its tables (`tableEntities`), then its linked tables (`linkedTableEntities`), then
/// its saved queries (`queryEntities`), each kind with its own icon. It shows the state of the last `reload`;
/// the controller's lists are read again only there. Items are never editable.
class FileListModel : public QAbstractItemModel {
    Q_OBJECT
public:
    /// The table's row count, or an invalid value for files and while counts are hidden.
    static constexpr int RowCountRole = Qt::UserRole + 1;
    /// The bare name of a file or table (the display text without the row count).
    static constexpr int NameRole = Qt::UserRole + 2;

    explicit FileListModel(BrowserController &controller, QObject *parent = nullptr);

    /// Reads the controller's lists again (a model reset).
    void reload();
    /// Whether tables carry their row count ("numRowsShown"); the rows' texts change in place.
    void setNumRowsShown(bool shown);
    bool numRowsShown() const { return m_numRowsShown; }

    BrowserItem itemForIndex(const QModelIndex &index) const;
    QModelIndex indexForFile(const TOrbMDBFile *file) const;
    QModelIndex indexForTable(const TOrbMDBTable *table) const;
    QModelIndex indexForLinkedTable(const TOrbMDBLinkedTable *link) const;
    QModelIndex indexForQuery(const TOrbMDBQuery *query) const;
    QModelIndex indexForItem(const BrowserItem &item) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct FileNode {
        TOrbMDBFile *file;
        bool open;
        std::vector<TOrbMDBTable *> tables;
        std::vector<TOrbMDBLinkedTable *> linkedTables;
        std::vector<TOrbMDBQuery *> queries;

        std::size_t childCount() const { return tables.size() + linkedTables.size() + queries.size(); }
        /// The item of a child row: tables first, then linked tables, then queries.
        BrowserItem child(std::size_t row) const;
    };
    /// The index of the child row `row` under the file at `fileRow`.
    QModelIndex childIndex(std::size_t fileRow, std::size_t row) const;

    BrowserController &m_controller;
    std::vector<FileNode> m_files;
    bool m_numRowsShown = true;
    QIcon m_fileIcon;
    QIcon m_tableIcon;
    QIcon m_linkedTableIcon;
    QIcon m_queryIcon;
};

} // namespace vellum
