#include "app/widgets/CopyableTableView.h"

#include "app/models/TableDataModel.h"
#include "app/support/desktopServices.h"
#include "app/support/qtStrings.h"
#include "app/widgets/AttachmentMenu.h"
#include "browser/gridTexts.h"
#include "export/OutputFile.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBTable.h"
#include "util/format.h"
#include "util/localized.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace vellum {

// ---------------------------------------------------------------------------------------------

QWidget *CellCursorDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                          const QModelIndex &index) const
{
    Q_UNUSED(option);
    auto *editor = new QLineEdit(parent);
    editor->setReadOnly(true);
    editor->setFrame(false);
    editor->setFont(index.data(Qt::FontRole).value<QFont>());
    editor->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
    return editor;
}

void CellCursorDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *line = qobject_cast<QLineEdit *>(editor)) {
        line->setText(gridText(index.data(Qt::DisplayRole).toString()));
        line->selectAll();
    }
}

QString CellCursorDelegate::gridText(const QString &text)
{
    if (text.size() <= kGridTextLimit)
        return text;
    return text.left(kGridTextLimit) + QChar(0x2026);
}

void CellCursorDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->text.size() > kGridTextLimit)
        option->text = gridText(option->text);
}

void CellCursorDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const
{
    // The grid is read-only: the cursor's editor never writes back.
}

void CellCursorDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    if (index.column() == m_focusedColumn) {
        QColor tint = opt.palette.color(QPalette::Highlight);
        tint.setAlpha(28);
        painter->fillRect(opt.rect, tint);
    }
    const bool grey = index.data(Qt::ForegroundRole).isValid();
    if (grey && (opt.state & QStyle::State_Selected))
        opt.palette.setColor(QPalette::HighlightedText, QColor(0xd8, 0xd8, 0xd8));
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
}

bool CellCursorDelegate::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Copy)) {
            // The editor shows the cell; Copy takes rows as everywhere in the grid.
            emit copyRequested();
            return true;
        }
        switch (key->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Escape:
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            emit cursorKey(key->key(), key->modifiers());
            return true;
        default:
            break;
        }
    }
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

// ---------------------------------------------------------------------------------------------

CopyableTableView::CopyableTableView(QWidget *parent)
    : QTableView(parent), m_delegate(new CellCursorDelegate(this)), m_menu(new QMenu(this))
{
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setSortingEnabled(false);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QFont cellFont = QApplication::font();
    if (cellFont.pointSizeF() > 0)
        cellFont.setPointSizeF(cellFont.pointSizeF() - 1);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(cellFont).height() + 7);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &CopyableTableView::headerClicked);
    connect(m_delegate, &CellCursorDelegate::cursorKey, this, &CopyableTableView::onCursorKey);
    connect(m_delegate, &CellCursorDelegate::copyRequested, this, &CopyableTableView::copy);
    setContextMenuPolicy(Qt::DefaultContextMenu);

    m_copyAction = m_menu->addAction(localizedQ("Copy"), this, &CopyableTableView::copy);
    m_copyAction->setShortcut(QKeySequence::Copy);
    m_menu->addSeparator();
    m_selectAllAction = m_menu->addAction(localizedQ("Select All"), this, &CopyableTableView::selectAllRows);
    m_deselectAllAction = m_menu->addAction(localizedQ("Deselect All"), this, &CopyableTableView::deselectAllRows);
    m_menu->addSeparator();
    m_jumpAction = m_menu->addAction(localizedQ("Jump to Row…"), this, &CopyableTableView::jumpToRow);
    m_menu->addSeparator();
    m_saveAsAction = m_menu->addAction(localizedQ("Save As…"), this, &CopyableTableView::saveBlobAs);
}

void CopyableTableView::setDataModel(TableDataModel *model)
{
    m_model = model;
    setModel(model);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        // Keyboard selection changes count as clicks for the status text.
        if (!(QApplication::mouseButtons() & Qt::LeftButton))
            emit recordSelectionChanged();
    });
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        m_cursor = QModelIndex();
        m_delegate->setFocusedColumn(-1);
    });
}

void CopyableTableView::setEditedColumn(int column, int row)
{
    if (!m_model || row < 0 || column < 0 || row >= m_model->rowCount() || column >= m_model->columnCount())
        return;
    const QModelIndex cell = m_model->index(row, column);
    if (!(m_model->flags(cell) & Qt::ItemIsEditable))
        return;
    if (m_cursor.isValid() && m_cursor != cell)
        closePersistentEditor(m_cursor);
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_cursor = cell;
    m_delegate->setFocusedColumn(column);
    scrollTo(cell);
    viewport()->update();
    openPersistentEditor(cell);
    if (QWidget *editor = indexWidget(cell)) {
        editor->setFocus(Qt::OtherFocusReason);
        if (auto *line = qobject_cast<QLineEdit *>(editor))
            line->selectAll();
    }
    emit cellCursorChanged(row, column);
    emit recordSelectionChanged();
}

void CopyableTableView::leaveCellCursor()
{
    if (m_cursor.isValid())
        closePersistentEditor(m_cursor);
    const bool had = m_cursor.isValid();
    m_cursor = QModelIndex();
    m_delegate->setFocusedColumn(-1);
    viewport()->update();
    if (had)
        emit cellCursorLeft();
}

void CopyableTableView::onCursorKey(int key, Qt::KeyboardModifiers)
{
    if (!m_cursor.isValid())
        return;
    const int row = m_cursor.row();
    const int column = m_cursor.column();
    switch (key) {
    case Qt::Key_Up:
        if (row > 0)
            setEditedColumn(column, row - 1);
        break;
    case Qt::Key_Down:
        if (row + 1 < m_model->rowCount())
            setEditedColumn(column, row + 1);
        break;
    case Qt::Key_Left:
        if (column > 0)
            setEditedColumn(column - 1, row);
        break;
    case Qt::Key_Right:
        if (column + 1 < m_model->columnCount())
            setEditedColumn(column + 1, row);
        break;
    case Qt::Key_Escape:
        leaveCellCursor();
        setFocus(Qt::OtherFocusReason);
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        leaveCellCursor();
        setFocus(Qt::OtherFocusReason);
        break;
    default:
        break;
    }
}

void CopyableTableView::keyPressEvent(QKeyEvent *event)
{
    if (m_model && m_model->rowCount() > 0 && m_model->columnCount() > 0 &&
        (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) && event->modifiers() == Qt::NoModifier) {
        const QModelIndexList rows = selectionModel()->selectedRows();
        const int row = rows.isEmpty() ? 0
                        : currentIndex().isValid() && selectionModel()->isRowSelected(currentIndex().row())
                            ? currentIndex().row()
                            : rows.first().row();
        setEditedColumn(event->key() == Qt::Key_Left ? m_model->columnCount() - 1 : 0, row);
        return;
    }
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    QTableView::keyPressEvent(event);
}

const TOrbBlobData *CopyableTableView::blobIconAt(const QPoint &pos) const
{
    const QModelIndex index = indexAt(pos);
    if (!index.isValid() || !m_model || !m_model->isOLEColumn(index.column()))
        return nullptr;
    const CellValue value = m_model->cellValue(index.row(), index.column());
    if (!value.isBlob() || !value.blob)
        return nullptr;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.index = index;
    m_delegate->initStyleOption(&option, index);
    const QRect iconRect = style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, this);
    return iconRect.contains(pos) ? value.blob : nullptr;
}

void CopyableTableView::mousePressEvent(QMouseEvent *event)
{
    m_dragBlob = nullptr;
    if (event->button() == Qt::LeftButton) {
        if (const TOrbBlobData *blob = blobIconAt(event->position().toPoint())) {
            // A press on a blob's icon is the blob's: it may become a drag of its file.
            m_dragBlob = blob;
            m_dragStart = event->position().toPoint();
            event->accept();
            return;
        }
    }
    m_pressed = indexAt(event->position().toPoint());
    QTableView::mousePressEvent(event);
}

void CopyableTableView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragBlob && (event->buttons() & Qt::LeftButton) &&
        (event->position().toPoint() - m_dragStart).manhattanLength() >= QApplication::startDragDistance()) {
        const TOrbBlobData *blob = m_dragBlob;
        m_dragBlob = nullptr;
        dragBlobFile(this, *blob, fileIconForExtension(toQString(blob->fileExtension())).pixmap(32, 32));
        return;
    }
    if (m_dragBlob)
        return;
    QTableView::mouseMoveEvent(event);
}

void CopyableTableView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_dragBlob) {
        m_dragBlob = nullptr;
        event->accept();
        return;
    }
    QTableView::mouseReleaseEvent(event);
    const QModelIndex released = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && released.isValid() && released == m_pressed &&
        viewport()->rect().contains(event->position().toPoint()))
        setEditedColumn(released.column(), released.row());
    m_pressed = QModelIndex();
    emit recordSelectionChanged();
}

void CopyableTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        if (const TOrbBlobData *blob = blobIconAt(event->position().toPoint())) {
            // Pictures and safe document types open; anything else is not opened, but the
            // click is the icon's all the same.
            openBlobIfSafe(*blob);
            event->accept();
            return;
        }
        // An attachment cell offers its files.
        const QModelIndex index = indexAt(event->position().toPoint());
        if (index.isValid() && m_model) {
            const CellValue value = m_model->cellValue(index.row(), index.column());
            if (value.complex && value.complex->kind() == ComplexKind::Attachment &&
                !value.complex->attachments().empty()) {
                AttachmentMenu menu(*value.complex, this);
                menu.exec(event->globalPosition().toPoint());
                event->accept();
                return;
            }
        }
    }
    QTableView::mouseDoubleClickEvent(event);
}

QList<int> CopyableTableView::rowsToCopy() const
{
    QList<int> selected;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        selected.append(index.row());
    std::sort(selected.begin(), selected.end());
    const int anchor = m_rightClickedRow >= 0 ? m_rightClickedRow : (selected.isEmpty() ? -1 : selected.last());
    if (anchor < 0)
        return {};
    if (selected.contains(anchor))
        return selected;
    return {anchor};
}

QString CopyableTableView::copyText() const
{
    if (!m_model || !m_model->table())
        return {};
    std::vector<std::uint32_t> rows;
    for (const int row : rowsToCopy())
        rows.push_back(m_model->tableRow(row));
    std::vector<std::size_t> columns;
    const QHeaderView *header = horizontalHeader();
    for (int visual = 0; visual < header->count(); ++visual) {
        const int logical = header->logicalIndex(visual);
        if (!header->isSectionHidden(logical))
            columns.push_back(static_cast<std::size_t>(logical));
    }
    return toQString(copyTextForRows(*m_model->table(), rows, columns));
}

void CopyableTableView::copy()
{
    if (rowsToCopy().isEmpty())
        return;
    QApplication::clipboard()->setText(copyText());
}

void CopyableTableView::selectAllRows()
{
    if (canSelectAll())
        selectAll();
    emit recordSelectionChanged();
}

void CopyableTableView::deselectAllRows()
{
    leaveCellCursor();
    clearSelection();
    emit recordSelectionChanged();
}

bool CopyableTableView::canSelectAll() const
{
    return m_model && m_model->rowCount() > 0;
}

bool CopyableTableView::canDeselectAll() const
{
    return selectionModel() && selectionModel()->hasSelection();
}

bool CopyableTableView::canCopy() const
{
    return m_rightClickedRow >= 0 || canDeselectAll();
}

bool CopyableTableView::canJumpToRow() const
{
    return canSelectAll();
}

void CopyableTableView::selectRowAlone(int row)
{
    if (!m_model || row < 0 || row >= m_model->rowCount())
        return;
    leaveCellCursor();
    const QModelIndex index = m_model->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
    setFocus(Qt::OtherFocusReason);
    emit recordSelectionChanged();
}

void CopyableTableView::jumpToRow()
{
    if (!canJumpToRow())
        return;
    QInputDialog dialog(window());
    dialog.setWindowTitle(localizedQ("Jump to row"));
    dialog.setLabelText(toQString(formatObjects(localized("%@:"), {localized("Row")})));
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setWindowModality(Qt::WindowModal);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const auto target =
        jumpToRowTarget(dialog.textValue().toStdString(), static_cast<std::size_t>(m_model->rowCount()));
    if (!target) {
        QApplication::beep();
        return;
    }
    selectRowAlone(static_cast<int>(*target));
}

QModelIndex CopyableTableView::saveAsCell() const
{
    if (m_rightClickedRow >= 0)
        return m_rightClickedCell;
    return m_cursor;
}

bool CopyableTableView::canSaveBlobAs() const
{
    const QModelIndex cell = saveAsCell();
    if (!m_model || !cell.isValid())
        return false;
    const CellValue value = m_model->cellValue(cell.row(), cell.column());
    return value.isBlob() && value.blob && !value.blob->isLinkOnly();
}

QString CopyableTableView::proposedBlobFileName(const QModelIndex &cell) const
{
    const TOrbMDBTable *table = m_model ? m_model->table() : nullptr;
    if (!table || !cell.isValid() || cell.column() >= static_cast<int>(table->columns().size()))
        return {};
    const CellValue value = m_model->cellValue(cell.row(), cell.column());
    if (value.isBlob() && value.blob && !value.blob->packageLabel().empty()) {
        // The name the file had when it was put into the Package.
        QString label = toQString(value.blob->packageLabel());
        label.replace(QLatin1Char('/'), QLatin1Char('_'));
        label.replace(QChar(0), QLatin1Char('_'));
        if (label != QLatin1String(".") && label != QLatin1String(".."))
            return label;
    }
    QString name = QStringLiteral("%1-%2-%3")
                       .arg(toQString(table->name()))
                       .arg(static_cast<qulonglong>(m_model->tableRow(cell.row())) + 1)
                       .arg(toQString(table->columns()[static_cast<std::size_t>(cell.column())]->name()));
    // A name is one path component: a slash (or a NUL) would make it a path.
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    name.replace(QChar(0), QLatin1Char('_'));
    if (value.isBlob() && value.blob && !value.blob->fileExtension().empty())
        name += QLatin1Char('.') + toQString(value.blob->fileExtension());
    return name;
}

namespace {

/// Writes all of `data` to `fd`; false with errno set when a write fails.
bool writeAll(int fd, const std::vector<std::uint8_t> &data)
{
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t written = ::write(fd, data.data() + done, data.size() - done);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        done += static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

void CopyableTableView::saveBlobAs()
{
    if (!canSaveBlobAs())
        return;
    const QModelIndex cell = saveAsCell();
    const CellValue value = m_model->cellValue(cell.row(), cell.column());
    const TOrbBlobData *blob = value.blob;
    const QString proposed = proposedBlobFileName(cell);
    QString path;
    if (m_savePathChooser) {
        path = m_savePathChooser(proposed);
    } else {
        path = QFileDialog::getSaveFileName(window(), localizedQ("Save As…"), QDir::home().filePath(proposed));
    }
    if (path.isEmpty())
        return;
    OutputFile output;
    QString error;
    if (!output.begin(QFile::encodeName(path).toStdString(), OutputFile::Target::Descriptor, false)) {
        error = toQString(output.errorText());
    } else {
        const int fd = output.takeDescriptor();
        const bool written = writeAll(fd, blob->data());
        const int writeError = errno;
        const bool closed = ::close(fd) == 0;
        if (!written || !closed) {
            output.abandon();
            error = QString::fromLocal8Bit(std::strerror(written ? errno : writeError));
        } else if (!output.commit()) {
            error = toQString(output.errorText());
        }
    }
    if (error.isEmpty())
        return;
    const QString message = QStringLiteral("%1: %2").arg(path, error);
    if (m_saveErrorHandler) {
        m_saveErrorHandler(message);
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, localizedQ("Error"), message, QMessageBox::Ok, window());
    box->setTextFormat(Qt::PlainText);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void CopyableTableView::validateMenu()
{
    m_selectAllAction->setEnabled(canSelectAll());
    m_deselectAllAction->setEnabled(canDeselectAll());
    m_copyAction->setEnabled(canCopy());
    m_jumpAction->setEnabled(canJumpToRow());
    m_saveAsAction->setEnabled(canSaveBlobAs());
}

void CopyableTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const QModelIndex index = indexAt(event->pos());
    m_rightClickedRow = index.isValid() ? index.row() : -1;
    m_rightClickedCell = index;
    validateMenu();
    m_menu->exec(event->globalPos());
    m_rightClickedRow = -1;
    m_rightClickedCell = QModelIndex();
}

} // namespace vellum
