#pragma once

#include <QPoint>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTableView>

#include <functional>

class QMenu;

namespace vellum {

class TableDataModel;
class TOrbBlobData;

/// The grid's delegate: greys null and blob cells (lighter on a highlighted row), tints the
/// column of the cell cursor, and gives the cursor a read-only editor whose movement keys it
/// reports to the grid instead of moving the caret.
class CellCursorDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// The longest text a cell shows (the grid is at most a few hundred pixels wide).
    static constexpr int kGridTextLimit = 500;
    /// A cell's text cut to kGridTextLimit characters, "…" after a cut: laying out a memo of
    /// 200,000 characters to show its start would block the window.
    static QString gridText(const QString &text);
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    /// The grid column to tint (-1: none).
    void setFocusedColumn(int column) { m_focusedColumn = column; }

signals:
    /// A key typed in the cursor's editor that moves or leaves the cursor.
    void cursorKey(int key, Qt::KeyboardModifiers modifiers);
    /// Copy was typed in the cursor's editor: the grid copies its rows.
    void copyRequested();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    int m_focusedColumn = -1;
};

/// The read-only data grid: rows are selected whole (several at a time), a cell cursor picks
/// the cell whose content the bottom pane shows, the header steps the sort of a column, and
/// rows are copied as tab-separated text. Blob cells offer their icon for dragging the blob's
/// file out and for opening it with a double click.
class CopyableTableView : public QTableView {
    Q_OBJECT
public:
    explicit CopyableTableView(QWidget *parent = nullptr);

    void setDataModel(TableDataModel *model);
    TableDataModel *dataModel() const { return m_model; }

    /// Puts the cell cursor on a cell: selects its row alone, opens the read-only editor with
    /// the text selected, tints the column and reports the cell (cellCursorChanged).
    void setEditedColumn(int column, int row);
    /// Leaves the cell cursor (no column tinted) and reports it (cellCursorLeft).
    void leaveCellCursor();
    /// The cell of the cursor, invalid when none.
    QModelIndex cursorCell() const { return m_cursor; }

    /// The rows that Copy takes: all selected rows when the right-clicked row (or, without one,
    /// the selection) is selected, else the right-clicked row alone. Grid rows, ascending.
    QList<int> rowsToCopy() const;
    /// The copy text of `rowsToCopy`, columns in display order.
    QString copyText() const;
    /// The right-clicked row while the context menu is up (-1 otherwise).
    int rightClickedRow() const { return m_rightClickedRow; }

    /// Asks where to save a blob: `proposedName` is the proposed file name; an empty answer is
    /// a cancel.
    using SavePathChooser = std::function<QString(const QString &proposedName)>;
    /// Replaces the save dialog (tests).
    void setSavePathChooser(SavePathChooser chooser) { m_savePathChooser = std::move(chooser); }
    /// Replaces the alert that reports a failed save (tests).
    void setSaveErrorHandler(std::function<void(const QString &message)> handler)
    {
        m_saveErrorHandler = std::move(handler);
    }
    /// The cell Save As takes: the right-clicked cell while the context menu is up, else the
    /// cell cursor. Invalid when none.
    QModelIndex saveAsCell() const;
    /// The file name proposed for the blob of a cell: a Package's label where it has one, else
    /// "<table>-<row>-<column>.<ext>" with the row counted from 1 in the table; "/" in names
    /// made "_", no extension when none is known.
    QString proposedBlobFileName(const QModelIndex &cell) const;

    /// Whether a context-menu command applies now (the menu's validation).
    bool canSelectAll() const;
    bool canDeselectAll() const;
    bool canCopy() const;
    bool canJumpToRow() const;
    /// True when `saveAsCell` holds a blob with a payload.
    bool canSaveBlobAs() const;

    /// Selects grid row `row` alone, scrolls to it and takes the focus.
    void selectRowAlone(int row);

    /// The grid's context menu (Copy, Select All, Deselect All, Jump to Row…), validated each
    /// time it opens.
    QMenu *contextMenu() const { return m_menu; }

public slots:
    void copy();
    void selectAllRows();
    void deselectAllRows();
    /// Asks for a row number in a window-modal dialog and selects that row; beeps when out of
    /// range.
    void jumpToRow();
    /// Asks for a path (proposing `proposedBlobFileName`) and writes the payload of
    /// `saveAsCell`'s blob there, completely or not at all; a failure is reported in an alert.
    void saveBlobAs();

signals:
    /// The cell cursor moved to a cell (grid row and column).
    void cellCursorChanged(int row, int column);
    /// The cell cursor was left (Escape, Tab, or a new table).
    void cellCursorLeft();
    /// The user clicked in the grid or the selection changed by keyboard: update the status.
    void recordSelectionChanged();
    /// A header was clicked: step the sort of that column.
    void headerClicked(int column);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void onCursorKey(int key, Qt::KeyboardModifiers modifiers);
    /// The blob of a cell when the point lies in its icon, else nullptr.
    const TOrbBlobData *blobIconAt(const QPoint &pos) const;
    void validateMenu();

    TableDataModel *m_model = nullptr;
    CellCursorDelegate *m_delegate;
    QPersistentModelIndex m_cursor;
    QPersistentModelIndex m_pressed;
    const TOrbBlobData *m_dragBlob = nullptr;
    QPoint m_dragStart;
    int m_rightClickedRow = -1;
    QMenu *m_menu;
    QAction *m_copyAction;
    QAction *m_selectAllAction;
    QAction *m_deselectAllAction;
    QAction *m_jumpAction;
    QAction *m_saveAsAction;
    QPersistentModelIndex m_rightClickedCell;
    SavePathChooser m_savePathChooser;
    std::function<void(const QString &)> m_saveErrorHandler;
};

} // namespace vellum
