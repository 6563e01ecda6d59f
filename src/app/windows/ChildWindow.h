#pragma once

#include "app/widgets/GCJumpBar.h"

#include "app/windows/ChildWindowManager.h"

#include <QMainWindow>
#include <QPointer>

namespace vellum {

class DataView;
class TOrbMDBTable;

/// A table in a window of its own: its own grid with the bottom pane always shown and all rows
/// (the main window's data search does not apply), titled "Table @File", with a jump bar that
/// shows the controller's menu and an Edit menu acting on this window. Deletes itself on close.
class ChildWindow : public QMainWindow, private JumpBarDelegate {
    Q_OBJECT
public:
    ChildWindow(ChildWindowManager &manager, TOrbMDBTable *table);
    ~ChildWindow() override;

    /// Shows a table (or none: empty title and grid).
    void showTable(TOrbMDBTable *table);
    TOrbMDBTable *tableToShow() const { return m_tableToShow; }
    DataView *dataView() const { return m_dataView; }
    /// Takes the controller's menu tree and selects this window's own table in it again.
    void refreshJumpBarMenu(JumpBarMenu *menu);
    void updateJumpBarSelection();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path) override;
    void jumpBarWillShowSubmenuAtIndexPath(GCJumpBar *bar, const IndexPath &path) override;
    void buildEditMenu();

    /// The manager may go away first (it belongs to the main window).
    QPointer<ChildWindowManager> m_manager;
    TOrbMDBTable *m_tableToShow = nullptr;
    DataView *m_dataView;
};

} // namespace vellum
