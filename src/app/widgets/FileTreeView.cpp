#include "app/widgets/FileTreeView.h"

#include "app/models/FileListModel.h"
#include "app/support/qtStrings.h"
#include "browser/BrowserController.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace vellum {

namespace {

QStringList localPaths(const QMimeData *mime)
{
    QStringList paths;
    if (!mime || !mime->hasUrls())
        return paths;
    for (const QUrl &url : mime->urls())
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

} // namespace

QFont FileListDelegate::countFont()
{
    // Helvetica one point below the list's font (12 points beside a 13-point system font on the
    // desktop this list was first drawn for).
    QFont font(QStringLiteral("Helvetica"));
    const qreal base = QApplication::font().pointSizeF();
    font.setPointSizeF(base > 2 ? base - 1 : 12);
    return font;
}

void FileListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QVariant count = index.data(FileListModel::RowCountRole);
    if (!count.isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    // The name as usual, then "  (N)" in grey right after it. A name too long for the row is
    // shortened so that the count stays whole; in a very narrow list only the name is shown.
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    const QString name = index.data(FileListModel::NameRole).toString();
    const QString countText = QStringLiteral("  (%1)").arg(count.toLongLong());
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    opt.text = name;
    const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget);
    const int countWidth = QFontMetrics(countFont()).horizontalAdvance(countText) + 4;
    const int room = textRect.width() - countWidth;
    const bool countShown = room >= opt.fontMetrics.horizontalAdvance(QStringLiteral("Mm…"));
    if (countShown && opt.fontMetrics.horizontalAdvance(name) > room)
        opt.text = opt.fontMetrics.elidedText(name, Qt::ElideRight, room);
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
    if (!countShown)
        return;

    const int nameWidth = opt.fontMetrics.horizontalAdvance(opt.text);
    const QRect countRect = textRect.adjusted(nameWidth + 4, 0, 0, 0);
    painter->save();
    painter->setFont(countFont());
    painter->setPen((opt.state & QStyle::State_Selected) ? opt.palette.color(QPalette::HighlightedText)
                                                         : QColor(0x80, 0x80, 0x80));
    painter->drawText(countRect, Qt::AlignLeft | Qt::AlignVCenter, countText);
    painter->restore();
}

QSize FileListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const QVariant count = index.data(FileListModel::RowCountRole);
    if (count.isValid())
        size.setHeight(std::max(size.height(), QFontMetrics(countFont()).height() + 2));
    return size;
}

FileTreeView::FileTreeView(QWidget *parent) : QTreeView(parent), m_dropHint(new QLabel(this))
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    setExpandsOnDoubleClick(false);
    setItemDelegate(new FileListDelegate(this));
    setIconSize(QSize(16, 16));
    setContextMenuPolicy(Qt::CustomContextMenu);

    m_dropHint->setText(localizedQ("Drop files here to begin"));
    m_dropHint->setAlignment(Qt::AlignCenter);
    m_dropHint->setWordWrap(true);
    m_dropHint->setEnabled(false);
    m_dropHint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_dropHint->hide();
}

void FileTreeView::setDropHintVisible(bool visible)
{
    m_dropHint->setGeometry(viewport()->geometry());
    m_dropHint->setVisible(visible);
}

bool FileTreeView::isDropHintVisible() const
{
    return !m_dropHint->isHidden();
}

void FileTreeView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    m_dropHint->setGeometry(viewport()->geometry());
}

bool FileTreeView::acceptsPaths(const QStringList &paths)
{
    for (const QString &path : paths)
        if (hasDatabaseExtension(path.toStdString()))
            return true;
    return false;
}

void FileTreeView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls() && acceptsPaths(localPaths(event->mimeData())))
        event->acceptProposedAction();
    else
        event->ignore();
}

void FileTreeView::dragMoveEvent(QDragMoveEvent *event)
{
    // Any place on the list is a drop on the whole list.
    if (event->mimeData()->hasUrls() && acceptsPaths(localPaths(event->mimeData())))
        event->acceptProposedAction();
    else
        event->ignore();
}

void FileTreeView::dropEvent(QDropEvent *event)
{
    if (!event->mimeData()->hasUrls()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    const QStringList paths = localPaths(event->mimeData());
    if (!paths.isEmpty())
        emit filesDropped(paths);
}

} // namespace vellum
