#include "app/models/TableDataModel.h"

#include "app/support/applicationSetup.h"
#include "app/support/desktopServices.h"
#include "app/support/qtStrings.h"
#include "browser/gridTexts.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBTable.h"

#include <QApplication>
#include <QColor>
#include <QMetaObject>
#include <QPalette>

#include <memory>

namespace vellum {

namespace {

Qt::Alignment alignmentOf(CellAlignment alignment)
{
    switch (alignment) {
    case CellAlignment::Right:
        return Qt::AlignRight | Qt::AlignVCenter;
    case CellAlignment::Center:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    case CellAlignment::Justified:
        return Qt::AlignJustify | Qt::AlignVCenter;
    case CellAlignment::Left:
    case CellAlignment::Natural:
        break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

} // namespace

TableDataModel::TableDataModel(QObject *parent) : QAbstractTableModel(parent), m_keyIcon(namedIcon("OV_Key"))
{
    m_cellFont = QApplication::font();
    if (m_cellFont.pointSizeF() > 0)
        m_cellFont.setPointSizeF(m_cellFont.pointSizeF() - 1);
}

TableDataModel::~TableDataModel()
{
    m_task.invalidate();
    m_task.wait();
}

void TableDataModel::showTable(const TOrbMDBTable *table, const RowFilter &filter, ReloadHooks hooks)
{
    if (table != m_table) {
        // Work on the previous table ends before that table may go away.
        m_task.invalidate();
        m_task.wait();
    }
    request(table, filter, std::move(hooks));
}

void TableDataModel::reload(const RowFilter &filter, ReloadHooks hooks)
{
    request(m_table, filter, std::move(hooks));
}

void TableDataModel::request(const TOrbMDBTable *table, const RowFilter &filter, ReloadHooks hooks)
{
    const bool newTable = table != m_table;
    RowSet::Request request = newTable ? RowSet().request(table, filter) : m_rows.request(table, filter);
    if (!table || table->rowCount() < kBackgroundRows) {
        m_task.invalidate();
        m_pendingHooks = {};
        putRows(table, std::move(*RowSet::build(request, {})), hooks);
        setReloading(false);
        return;
    }
    if (newTable) // the new columns at once, the rows when they are ready
        putRows(table, RowSet(), {});
    m_pendingHooks = std::move(hooks);
    m_task.post([this, request = std::move(request)](const BackgroundTask::Run &run) {
        std::optional<RowSet> rows = RowSet::build(request, [&run] { return run.stopRequested(); });
        if (!rows)
            return;
        // Handed over to the GUI thread; dropped there when a newer request came meanwhile.
        auto shared = std::make_shared<RowSet>(std::move(*rows));
        QMetaObject::invokeMethod(
            this, [this, generation = run.generation(), shared] { rowsArrived(generation, std::move(*shared)); },
            Qt::QueuedConnection);
    });
    setReloading(true);
}

void TableDataModel::rowsArrived(std::uint64_t generation, RowSet rows)
{
    if (!m_task.isCurrent(generation) || rows.table() != m_table)
        return;
    const ReloadHooks hooks = std::move(m_pendingHooks);
    m_pendingHooks = {};
    putRows(m_table, std::move(rows), hooks);
    setReloading(false);
}

void TableDataModel::putRows(const TOrbMDBTable *table, RowSet rows, const ReloadHooks &hooks)
{
    if (hooks.before)
        hooks.before();
    beginResetModel();
    m_table = table;
    m_columnCount = table ? static_cast<int>(table->columns().size()) : 0;
    m_rows = std::move(rows);
    endResetModel();
    if (hooks.after)
        hooks.after();
}

void TableDataModel::setReloading(bool reloading)
{
    if (reloading == m_reloading)
        return;
    m_reloading = reloading;
    if (reloading)
        emit reloadStarted();
    else
        emit reloadFinished();
}

CellValue TableDataModel::cellValue(int row, int column) const
{
    const TOrbMDBTable *table = m_table;
    if (!table || row < 0 || column < 0 || static_cast<std::size_t>(row) >= m_rows.size() || column >= m_columnCount)
        return CellValue::null();
    return table->cell(m_rows.rowAt(static_cast<std::size_t>(row)), static_cast<std::size_t>(column));
}

bool TableDataModel::isOLEColumn(int column) const
{
    const TOrbMDBTable *table = m_table;
    return table && column >= 0 && column < m_columnCount &&
           table->columns()[static_cast<std::size_t>(column)]->dataType() == "OLE";
}

std::int64_t TableDataModel::sortOrder(int column) const
{
    const TOrbMDBTable *table = m_table;
    if (!table || column < 0 || column >= m_columnCount)
        return 0;
    return table->columns()[static_cast<std::size_t>(column)]->sortOrder();
}

int TableDataModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int TableDataModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columnCount;
}

QVariant TableDataModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.model() != this)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole: {
        const CellValue value = cellValue(index.row(), index.column());
        if (role == Qt::ToolTipRole && value.isNull() && value.blob) // a link-only Package
            return toQString(value.blob->cellDescription());
        if (role == Qt::ToolTipRole && !value.isBlob())
            return {};
        const TOrbMDBTable *table = m_rows.table();
        if (table && index.column() < m_columnCount)
            return toQString(cellDisplayText(value, *table->columns()[static_cast<std::size_t>(index.column())]));
        return toQString(cellDisplayText(value));
    }
    case Qt::ForegroundRole: {
        const CellValue value = cellValue(index.row(), index.column());
        if (value.isText())
            return {};
        return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
    }
    case Qt::DecorationRole: {
        if (!isOLEColumn(index.column()))
            return {};
        const CellValue value = cellValue(index.row(), index.column());
        if (!value.isBlob() || !value.blob)
            return {};
        return fileIconForExtension(toQString(value.blob->fileExtension()));
    }
    case Qt::TextAlignmentRole: {
        const TOrbMDBTable *table = m_table;
        if (!table || index.column() >= m_columnCount)
            return {};
        return QVariant::fromValue(
            alignmentOf(table->columns()[static_cast<std::size_t>(index.column())]->textAlignForCell()));
    }
    case Qt::FontRole:
        return m_cellFont;
    case IsBlobRole:
        return cellValue(index.row(), index.column()).isBlob();
    default:
        return {};
    }
}

QVariant TableDataModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const TOrbMDBTable *table = m_table;
    if (orientation != Qt::Horizontal || !table || section < 0 || section >= m_columnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    const TOrbMDBColumn &column = *table->columns()[static_cast<std::size_t>(section)];
    switch (role) {
    case Qt::DisplayRole:
        return toQString(column.name());
    case Qt::DecorationRole:
        return column.isPrimaryKey() ? QVariant(m_keyIcon) : QVariant();
    case Qt::ToolTipRole:
        return toQString(column.name() + " (" + column.dataType() + ")");
    default:
        return {};
    }
}

Qt::ItemFlags TableDataModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    // Editable only so that the cell cursor can open its read-only editor; nothing is written.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
}

} // namespace vellum
