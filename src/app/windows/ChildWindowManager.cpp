#include "app/windows/ChildWindowManager.h"

#include "app/widgets/DataView.h"
#include "app/windows/ChildWindow.h"
#include "model/TOrbMDBTable.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace vellum {

ChildWindowManager::ChildWindowManager(ChildWindowDelegate &delegate, QObject *parent)
    : QObject(parent), m_delegate(delegate)
{
}

QPoint ChildWindowManager::cascadePosition(const QPoint &previous, const QSize &size, const QRect &area)
{
    QPoint next = previous + QPoint(kCascadeStep, kCascadeStep);
    // A window that would leave the area starts again at its top (or left) edge.
    if (next.y() + size.height() > area.bottom() + 1 || next.y() < area.top())
        next.setY(area.top());
    if (next.x() + size.width() > area.right() + 1 || next.x() < area.left())
        next.setX(area.left());
    return next;
}

ChildWindowManager::~ChildWindowManager()
{
    closeAll();
}

ChildWindow *ChildWindowManager::createChildWindow(TOrbMDBTable *table)
{
    auto *child = new ChildWindow(*this, table);
    m_childWins.push_back(child);
    // Cascade new windows a little from the last one, on the screen of the main window.
    const auto *mainWindow = qobject_cast<const QWidget *>(parent());
    const QScreen *screen = mainWindow ? mainWindow->screen() : QGuiApplication::primaryScreen();
    if (screen) {
        const QRect area = screen->availableGeometry();
        const QSize size = child->frameGeometry().size().expandedTo(child->sizeHint());
        if (m_childWins.size() > 1) {
            const ChildWindow *previous = m_childWins[m_childWins.size() - 2];
            child->move(cascadePosition(previous->pos(), size, area));
        } else {
            const QPoint origin = mainWindow ? mainWindow->pos() : area.topLeft();
            child->move(cascadePosition(origin, size, area));
        }
    }
    child->refreshJumpBarMenu(m_delegate.jumpBarMenu());
    child->show();
    child->raise();
    child->activateWindow();
    return child;
}

void ChildWindowManager::removeChild(ChildWindow *child)
{
    std::erase(m_childWins, child);
}

void ChildWindowManager::closeChildrenForFile(const TOrbMDBFile *file)
{
    const std::vector<ChildWindow *> children = m_childWins;
    for (ChildWindow *child : children)
        if (child->tableToShow() && child->tableToShow()->file() == file) {
            child->showTable(nullptr);
            child->close();
        }
}

void ChildWindowManager::refreshChildJumpBarMenu()
{
    for (ChildWindow *child : m_childWins)
        child->refreshJumpBarMenu(m_delegate.jumpBarMenu());
}

void ChildWindowManager::childMenuTreeChanged()
{
    for (ChildWindow *child : m_childWins)
        child->dataView()->jumpBar()->menuTreeChanged();
}

void ChildWindowManager::AllAlwaysOnTop(bool onTop)
{
    for (ChildWindow *child : m_childWins) {
        const bool visible = child->isVisible();
        child->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
        if (visible)
            child->show();
    }
}

void ChildWindowManager::closeAll()
{
    const std::vector<ChildWindow *> children = m_childWins;
    for (ChildWindow *child : children) {
        child->showTable(nullptr);
        child->close();
    }
    m_childWins.clear();
}

} // namespace vellum
