#pragma once

#include "browser/IndexPath.h"

#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>
#include <vector>

namespace vellum {

class ChildWindow;
class JumpBarMenu;
class TOrbMDBFile;
class TOrbMDBTable;

/// What child windows need from the application controller.
class ChildWindowDelegate {
public:
    virtual ~ChildWindowDelegate() = default;
    /// The controller's jump-bar menu tree (nullptr: none).
    virtual JumpBarMenu *jumpBarMenu() const = 0;
    /// Opens a listed file (asynchronously); `done` gets whether it is open now. The controller
    /// brings its file list up to date afterwards.
    virtual void openFileForChild(TOrbMDBFile *file, std::function<void(bool opened)> done) = 0;
    /// A child's jump bar is about to show the submenu of a file item that has none.
    virtual void childWillShowSubmenu(const IndexPath &path) = 0;
};

/// Keeps the open child windows of the application, in the order of opening.
class ChildWindowManager : public QObject {
    Q_OBJECT
public:
    ChildWindowManager(ChildWindowDelegate &delegate, QObject *parent = nullptr);
    ~ChildWindowManager() override;

    /// A new child window showing `table` (shown, in front, grid focused).
    ChildWindow *createChildWindow(TOrbMDBTable *table);
    /// Forgets a child (it closes itself).
    void removeChild(ChildWindow *child);
    /// Closes every child that shows a table of `file`.
    void closeChildrenForFile(const TOrbMDBFile *file);
    /// Gives every child the controller's current jump-bar menu.
    void refreshChildJumpBarMenu();
    /// Every child's jump bar lays out an open submenu again (tables were added).
    void childMenuTreeChanged();
    /// Raises the children above normal windows (or puts them back), for a full-screen main window.
    void AllAlwaysOnTop(bool onTop);
    /// Closes all children.
    void closeAll();

    /// How far each new child is placed from the one opened before it.
    static constexpr int kCascadeStep = 24;
    /// Where a window of `size` opens after one at `previous`: a step down and right, back to
    /// the top (left) edge of `area` where it would leave it.
    static QPoint cascadePosition(const QPoint &previous, const QSize &size, const QRect &area);

    const std::vector<ChildWindow *> &childWins() const { return m_childWins; }
    ChildWindowDelegate &delegate() const { return m_delegate; }

private:
    ChildWindowDelegate &m_delegate;
    std::vector<ChildWindow *> m_childWins;
};

} // namespace vellum
