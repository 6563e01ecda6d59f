#pragma once

#include "browser/IndexPath.h"

#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <QWidget>

#include <vector>

class QHBoxLayout;

namespace vellum {

class GCJumpBar;
class JumpBarMenu;
struct JumpBarItem;

/// Told by a jump bar what the user chose.
class JumpBarDelegate {
public:
    virtual ~JumpBarDelegate() = default;
    /// The user chose a location in one of the bar's menus (the bar already shows it).
    virtual void jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path) = 0;
    /// The submenu of a file item that has none yet is about to show.
    virtual void jumpBarWillShowSubmenuAtIndexPath(GCJumpBar *bar, const IndexPath &path) = 0;
};

/// One label of the bar: the title and image of the item at one level of the selected path.
class GCJumpBarLabel : public QToolButton {
    Q_OBJECT
public:
    GCJumpBarLabel(int level, std::size_t indexInLevel, QWidget *parent);
    /// Depth in the path, from 1.
    int level() const { return m_level; }
    std::size_t indexInLevel() const { return m_indexInLevel; }
    bool lastLabel() const { return m_lastLabel; }
    void setLastLabel(bool last) { m_lastLabel = last; }
    /// The full title (the button may show it shortened).
    const QString &fullText() const { return m_fullText; }
    void setFullText(const QString &text);

private:
    int m_level;
    std::size_t m_indexInLevel;
    bool m_lastLabel = false;
    QString m_fullText;
};

/// A one-line path control above a grid: the selected location as labels (file, then table);
/// a click on a label opens the menu of that level to jump elsewhere. The menu tree belongs to
/// the application controller; the bar only points at it.
class GCJumpBar : public QWidget {
    Q_OBJECT
public:
    explicit GCJumpBar(QWidget *parent = nullptr);

    void setDelegate(JumpBarDelegate *delegate) { m_delegate = delegate; }
    /// Shows a menu tree (not owned; nullptr: none). Choices from menus opened on an older
    /// tree are ignored.
    void setMenu(JumpBarMenu *menu);
    JumpBarMenu *menu() const { return m_menu; }

    /// Shows a location: stores the path and lays the labels out again when it changed. The
    /// delegate is not told (only the user's choices are reported).
    void setSelectedIndexPath(const IndexPath &path);
    const IndexPath &selectedIndexPath() const { return m_selected; }
    /// Selects the path of an item of the tree; nullptr clears the selection.
    void setSelectedMenuItem(const JumpBarItem *item);
    JumpBarItem *selectedMenuItem() const;
    JumpBarItem *menuItemAtIndexPath(const IndexPath &path) const;
    /// Clears the selection without telling the delegate.
    void clearSelection();

    /// The tree below an item grew (a file's tables were added): open menus show them.
    void menuTreeChanged();

    /// The labels shown now, left to right.
    const std::vector<GCJumpBarLabel *> &labels() const { return m_labels; }
    /// Builds the popup menu of a label's level (exposed for tests; the caller owns it).
    QMenu *menuForLevel(int level, QWidget *parent);
    /// Chooses the item at a path as the user does in a popup menu: shows it and tells the
    /// delegate. Ignored when the menu tree changed since `generation`.
    void chooseIndexPath(const IndexPath &path, unsigned generation);
    unsigned generation() const { return m_generation; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void layoutLabels();
    void fitLabels();
    void fillMenu(QMenu *menu, const JumpBarMenu *level, const IndexPath &levelPath);
    void fillFileSubmenu(QMenu *submenu, const IndexPath &filePath);

    JumpBarDelegate *m_delegate = nullptr;
    JumpBarMenu *m_menu = nullptr;
    IndexPath m_selected;
    unsigned m_generation = 0;
    QHBoxLayout *m_layout;
    std::vector<GCJumpBarLabel *> m_labels;
    std::vector<QWidget *> m_separators;
    /// File submenus that are open and wait for their tables.
    std::vector<std::pair<QPointer<QMenu>, IndexPath>> m_pendingSubmenus;
};

} // namespace vellum
