#include "app/widgets/GCJumpBar.h"

#include "app/support/applicationSetup.h"
#include "app/support/qtStrings.h"
#include "browser/JumpBarMenu.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPointer>

namespace vellum {

namespace {

QIcon iconFor(JumpBarImage image)
{
    switch (image) {
    case JumpBarImage::File:
        return namedIcon("FileList_MDBFile");
    case JumpBarImage::Table:
        return namedIcon("FileList_Table");
    case JumpBarImage::None:
        break;
    }
    return {};
}

} // namespace

GCJumpBarLabel::GCJumpBarLabel(int level, std::size_t indexInLevel, QWidget *parent)
    : QToolButton(parent), m_level(level), m_indexInLevel(indexInLevel)
{
    setAutoRaise(true);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setIconSize(QSize(16, 16));
    setFocusPolicy(Qt::NoFocus);
}

void GCJumpBarLabel::setFullText(const QString &text)
{
    m_fullText = text;
    setText(text);
    setToolTip(text);
}

GCJumpBar::GCJumpBar(QWidget *parent) : QWidget(parent), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(4, 1, 4, 1);
    m_layout->setSpacing(0);
    m_layout->addStretch(1);
    setFixedHeight(26);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void GCJumpBar::setMenu(JumpBarMenu *menu)
{
    m_menu = menu;
    ++m_generation;
    m_pendingSubmenus.clear();
    if (!menu)
        m_selected = IndexPath();
    layoutLabels();
}

JumpBarItem *GCJumpBar::menuItemAtIndexPath(const IndexPath &path) const
{
    return m_menu ? m_menu->itemAtIndexPath(path) : nullptr;
}

JumpBarItem *GCJumpBar::selectedMenuItem() const
{
    return menuItemAtIndexPath(m_selected);
}

void GCJumpBar::setSelectedIndexPath(const IndexPath &path)
{
    if (!(path == m_selected)) {
        m_selected = path;
        layoutLabels();
    }
}

void GCJumpBar::setSelectedMenuItem(const JumpBarItem *item)
{
    setSelectedIndexPath(item && m_menu ? m_menu->indexPathOfItem(item) : IndexPath());
}

void GCJumpBar::clearSelection()
{
    m_selected = IndexPath();
    layoutLabels();
}

void GCJumpBar::layoutLabels()
{
    // The old labels leave the bar at once; they are deleted later only because one of them
    // may be running its click handler (and a nested menu loop defers the deletion).
    for (GCJumpBarLabel *label : m_labels) {
        m_layout->removeWidget(label);
        label->hide();
        label->deleteLater();
    }
    for (QWidget *separator : m_separators) {
        m_layout->removeWidget(separator);
        separator->hide();
        separator->deleteLater();
    }
    m_labels.clear();
    m_separators.clear();
    if (!m_menu || m_selected.empty()) {
        update();
        return;
    }
    for (std::size_t level = 1; level <= m_selected.length(); ++level) {
        const IndexPath upTo = m_selected.subIndexPathToPosition(level);
        const JumpBarItem *item = m_menu->itemAtIndexPath(upTo);
        if (level > 1) {
            auto *separator = new QLabel(this);
            separator->setPixmap(namedIcon("GCJumpBarSeparator").pixmap(10, 18));
            m_layout->insertWidget(m_layout->count() - 1, separator);
            m_separators.push_back(separator);
        }
        auto *label = new GCJumpBarLabel(static_cast<int>(level), m_selected.indexAtPosition(level - 1), this);
        label->setFullText(item && !item->title.empty() ? toQString(item->title) : localizedQ("No files selected"));
        if (item)
            label->setIcon(iconFor(item->image));
        label->setLastLabel(level == m_selected.length());
        connect(label, &QToolButton::clicked, this, [this, label] {
            QMenu *popup = menuForLevel(label->level(), this);
            popup->exec(label->mapToGlobal(QPoint(0, label->height())));
            popup->deleteLater();
        });
        m_layout->insertWidget(m_layout->count() - 1, label);
        m_labels.push_back(label);
    }
    fitLabels();
    update();
}

void GCJumpBar::fitLabels()
{
    if (m_labels.empty())
        return;
    int wanted = 0;
    for (GCJumpBarLabel *label : m_labels) {
        label->setText(label->fullText());
        wanted += label->sizeHint().width();
    }
    for (QWidget *separator : m_separators)
        wanted += separator->sizeHint().width();
    const int available = width() - 8;
    if (wanted <= available || available <= 0)
        return;
    // Shorten the labels before the last one first, then the last one, to an equal share.
    const int share = std::max(48, available / static_cast<int>(m_labels.size()));
    for (GCJumpBarLabel *label : m_labels) {
        const int textRoom = share - label->iconSize().width() - 16;
        label->setText(label->fontMetrics().elidedText(label->fullText(), Qt::ElideMiddle, std::max(16, textRoom)));
    }
}

void GCJumpBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitLabels();
}

void GCJumpBar::paintEvent(QPaintEvent *)
{
    paintBarBackground(this, QColor(0xfa, 0xfa, 0xfa), QColor(0xe4, 0xe4, 0xe4));
}

QMenu *GCJumpBar::menuForLevel(int level, QWidget *parent)
{
    auto *popup = new QMenu(parent);
    if (!m_menu || level < 1)
        return popup;
    const IndexPath levelPath = m_selected.subIndexPathToPosition(static_cast<std::size_t>(level - 1));
    const JumpBarMenu *levelMenu = m_menu;
    if (!levelPath.empty()) {
        const JumpBarItem *parentItem = m_menu->itemAtIndexPath(levelPath);
        levelMenu = parentItem ? parentItem->submenu.get() : nullptr;
    }
    if (levelMenu)
        fillMenu(popup, levelMenu, levelPath);
    return popup;
}

void GCJumpBar::fillMenu(QMenu *menu, const JumpBarMenu *level, const IndexPath &levelPath)
{
    const unsigned generation = m_generation;
    for (std::size_t i = 0; i < level->size(); ++i) {
        const JumpBarItem *item = level->itemAt(i);
        const IndexPath path = levelPath.indexPathByAddingIndexPath(IndexPath{i});
        if (item->object.isFile()) {
            QMenu *submenu = menu->addMenu(iconFor(item->image), toQString(item->title));
            QPointer<QMenu> guard(submenu);
            connect(submenu, &QMenu::aboutToShow, this, [this, guard, path, generation] {
                if (!guard || generation != m_generation)
                    return;
                const JumpBarItem *fileItem = menuItemAtIndexPath(path);
                if (fileItem && !fileItem->submenu && m_delegate) {
                    m_pendingSubmenus.emplace_back(guard, path);
                    m_delegate->jumpBarWillShowSubmenuAtIndexPath(this, path);
                }
                if (guard && generation == m_generation)
                    fillFileSubmenu(guard, path);
            });
        } else {
            QAction *action = menu->addAction(iconFor(item->image), toQString(item->title));
            connect(action, &QAction::triggered, this, [this, path, generation] { chooseIndexPath(path, generation); });
        }
    }
}

void GCJumpBar::fillFileSubmenu(QMenu *submenu, const IndexPath &filePath)
{
    submenu->clear();
    const JumpBarItem *fileItem = menuItemAtIndexPath(filePath);
    if (!fileItem)
        return;
    const unsigned generation = m_generation;
    QAction *self = submenu->addAction(iconFor(fileItem->image), toQString(fileItem->title));
    connect(self, &QAction::triggered, this, [this, filePath, generation] { chooseIndexPath(filePath, generation); });
    if (!fileItem->submenu)
        return;
    submenu->addSeparator();
    fillMenu(submenu, fileItem->submenu.get(), filePath);
}

void GCJumpBar::menuTreeChanged()
{
    auto pending = std::move(m_pendingSubmenus);
    m_pendingSubmenus.clear();
    for (auto &[menu, path] : pending)
        if (menu)
            fillFileSubmenu(menu, path);
}

void GCJumpBar::chooseIndexPath(const IndexPath &path, unsigned generation)
{
    if (generation != m_generation)
        return;
    const JumpBarItem *item = menuItemAtIndexPath(path);
    if (!item)
        return;
    setSelectedMenuItem(item);
    if (m_delegate)
        m_delegate->jumpBarDidSelectItemAtIndexPath(this, m_selected);
}

} // namespace vellum
