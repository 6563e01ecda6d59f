#include "app/windows/ChildWindowManager.h"

#include "app/widgets/DataView.h"
#include "app/windows/ChildWindow.h"
#include "model/TOrbMDBTable.h"

#include <algorithm>

namespace vellum {

ChildWindowManager::ChildWindowManager(ChildWindowDelegate &delegate, QObject *parent)
    : QObject(parent), m_delegate(delegate)
{
}

ChildWindowManager::~ChildWindowManager()
{
    closeAll();
}

ChildWindow *ChildWindowManager::createChildWindow(TOrbMDBTable *table)
{
    auto *child = new ChildWindow(*this, table);
    m_childWins.push_back(child);
    // Cascade new windows a little from the last one.
    if (m_childWins.size() > 1) {
        const ChildWindow *previous = m_childWins[m_childWins.size() - 2];
        child->move(previous->pos() + QPoint(24, 24));
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
