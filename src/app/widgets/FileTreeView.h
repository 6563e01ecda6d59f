#pragma once

#include <QStringList>
#include <QStyledItemDelegate>
#include <QTreeView>

class QLabel;

namespace vellum {

/// Draws a table's row count after its name, in grey Helvetica a point smaller than the list.
class FileListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// The font of the row counts.
    static QFont countFont();
};

/// The file list's outline. It accepts drops of file names anywhere on the list as long as one
/// of them ends in "mdb" or "accdb", and shows the drop hint while it is empty (the hint lets
/// drops through to the list).
class FileTreeView : public QTreeView {
    Q_OBJECT
public:
    explicit FileTreeView(QWidget *parent = nullptr);

    /// Shows or hides the drop hint.
    void setDropHintVisible(bool visible);
    bool isDropHintVisible() const;

    /// Whether a drag of these local paths may be dropped (one of them is an Access file).
    static bool acceptsPaths(const QStringList &paths);

signals:
    /// Local paths dropped on the list (in the drag's order, all of them).
    void filesDropped(const QStringList &paths);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QLabel *m_dropHint;
};

} // namespace vellum
