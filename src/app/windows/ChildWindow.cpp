#include "app/windows/ChildWindow.h"

#include "app/support/qtStrings.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/windows/ChildWindowManager.h"
#include "browser/JumpBarMenu.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QPointer>

namespace vellum {

ChildWindow::ChildWindow(ChildWindowManager &manager, TOrbMDBTable *table)
    : m_manager(&manager), m_dataView(new DataView(true, this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setCentralWidget(m_dataView);
    // Children always show every row: no data filter.
    m_dataView->setFilterProvider([] { return RowFilter(); });
    m_dataView->jumpBar()->setDelegate(this);
    m_dataView->showHideJumpBar(true);
    buildEditMenu();
    resize(760, 520);
    showTable(table);
    m_dataView->grid()->setFocus(Qt::OtherFocusReason);
}

ChildWindow::~ChildWindow()
{
    if (m_manager)
        m_manager->removeChild(this);
}

void ChildWindow::buildEditMenu()
{
    QMenu *edit = menuBar()->addMenu(localizedQ("Edit"));
    CopyableTableView *grid = m_dataView->grid();
    QAction *copy = edit->addAction(localizedQ("Copy"), grid, &CopyableTableView::copy);
    copy->setShortcut(QKeySequence::Copy);
    QAction *selectAll = edit->addAction(localizedQ("Select All"), grid, &CopyableTableView::selectAllRows);
    selectAll->setShortcut(QKeySequence::SelectAll);
    QAction *deselectAll = edit->addAction(localizedQ("Deselect All"), grid, &CopyableTableView::deselectAllRows);
    deselectAll->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+A")));
    edit->addSeparator();
    QAction *jump = edit->addAction(localizedQ("Jump to Row…"), grid, &CopyableTableView::jumpToRow);
    jump->setShortcut(QKeySequence(QStringLiteral("Ctrl+J")));
    connect(edit, &QMenu::aboutToShow, this, [=] {
        copy->setEnabled(grid->canCopy());
        selectAll->setEnabled(grid->canSelectAll());
        deselectAll->setEnabled(grid->canDeselectAll());
        jump->setEnabled(grid->canJumpToRow());
    });
}

void ChildWindow::showTable(TOrbMDBTable *table)
{
    m_tableToShow = table;
    if (table && table->file())
        setWindowTitle(toQString(formatObjects("%@ @%@", {table->name(), table->file()->name()})));
    else
        setWindowTitle(QString());
    m_dataView->updateDataTableToShowMDBTable(table);
}

void ChildWindow::refreshJumpBarMenu(JumpBarMenu *menu)
{
    GCJumpBar *bar = m_dataView->jumpBar();
    bar->clearSelection();
    bar->setMenu(menu);
    updateJumpBarSelection();
}

void ChildWindow::updateJumpBarSelection()
{
    GCJumpBar *bar = m_dataView->jumpBar();
    if (!bar->menu() || !m_tableToShow)
        return;
    if (const JumpBarItem *item = locationItem(bar->menu(), m_tableToShow->file(), m_tableToShow))
        bar->setSelectedMenuItem(item);
}

void ChildWindow::jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path)
{
    const JumpBarItem *item = bar->menuItemAtIndexPath(path);
    if (!item)
        return;
    if (TOrbMDBFile *file = item->object.file) {
        QPointer<ChildWindow> self(this);
        const std::string title = formatObjects("@%@", {file->name()});
        if (!m_manager)
            return;
        m_manager->delegate().openFileForChild(file, [self, title](bool opened) {
            if (!self || !opened)
                return;
            self->showTable(nullptr);
            self->setWindowTitle(toQString(title));
            self->m_dataView->displayTextViewContent(std::nullopt);
        });
        return;
    }
    if (TOrbMDBTable *table = item->object.table; table && table != m_tableToShow) {
        showTable(table);
        m_dataView->displayTextViewContent(std::nullopt);
    }
}

void ChildWindow::jumpBarWillShowSubmenuAtIndexPath(GCJumpBar *, const IndexPath &path)
{
    if (m_manager)
        m_manager->delegate().childWillShowSubmenu(path);
}

void ChildWindow::closeEvent(QCloseEvent *event)
{
    m_dataView->jumpBar()->setMenu(nullptr);
    if (m_manager)
        m_manager->removeChild(this);
    QMainWindow::closeEvent(event);
}

} // namespace vellum
