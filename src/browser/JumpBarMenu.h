#pragma once

#include "browser/BrowserItem.h"
#include "browser/IndexPath.h"

#include <memory>
#include <string>
#include <vector>

namespace vellum {

class JumpBarMenu;

/// The picture shown before a jump-bar item's title.
enum class JumpBarImage { None, File, Table };

/// One item of the jump-bar menu tree: a title, an image, the file or table it stands for,
/// and, for an open file, a submenu of its tables.
struct JumpBarItem {
    std::string title;
    JumpBarImage image = JumpBarImage::None;
    BrowserItem object;
    std::unique_ptr<JumpBarMenu> submenu;
    JumpBarMenu *menu = nullptr; ///< the menu that holds this item (not owned)
};

/// A level of the jump bar's menu tree. Owns its items; a submenu knows the item it hangs from.
class JumpBarMenu {
public:
    const std::vector<std::unique_ptr<JumpBarItem>> &items() const { return m_items; }
    std::size_t size() const { return m_items.size(); }
    JumpBarItem *itemAt(std::size_t index) const { return index < m_items.size() ? m_items[index].get() : nullptr; }
    /// The item this menu hangs from (nullptr for the top menu).
    JumpBarItem *parentItem() const { return m_parentItem; }

    /// Appends an item and answers it.
    JumpBarItem *addItem(std::string title, JumpBarImage image, BrowserItem object);
    /// Gives an item a submenu if it has none and answers the submenu.
    static JumpBarMenu *ensureSubmenu(JumpBarItem &item);

    /// Follows the submenus of the items at each index but the last and answers the item at
    /// the last index of the menu reached; nullptr when a step does not exist.
    JumpBarItem *itemAtIndexPath(const IndexPath &path) const;
    /// The path of an item of this tree: its index in its menu, with the index of each parent
    /// item in front, up to this menu. Empty when the item is not in this tree.
    IndexPath indexPathOfItem(const JumpBarItem *item) const;

private:
    std::vector<std::unique_ptr<JumpBarItem>> m_items;
    JumpBarItem *m_parentItem = nullptr;
};

class TOrbMDBFile;
class TOrbMDBTable;

/// The controller's menu tree: none when no file is listed or none is selected; otherwise
/// one item per file in list order, an open file with a submenu of its tables. `loading` (a
/// file being loaded) counts as closed.
std::unique_ptr<JumpBarMenu> buildJumpBarMenu(const std::vector<TOrbMDBFile *> &files, const TOrbMDBFile *selectedFile,
                                              const TOrbMDBFile *loading = nullptr);

/// Adds one item per table of the item's file to its submenu (made when missing).
void addTableItems(JumpBarItem &fileItem);

/// The item of the current location: the file's top item, or the item of the selected table
/// in its submenu when the file item has one. nullptr when the file is not in the menu.
JumpBarItem *locationItem(const JumpBarMenu *menu, const TOrbMDBFile *selectedFile, const TOrbMDBTable *selectedTable);

} // namespace vellum
