#include "browser/JumpBarMenu.h"

#include "model/TOrbMDBFile.h"

#include <algorithm>

namespace vellum {

JumpBarItem *JumpBarMenu::addItem(std::string title, JumpBarImage image, BrowserItem object)
{
    auto item = std::make_unique<JumpBarItem>();
    item->title = std::move(title);
    item->image = image;
    item->object = object;
    item->menu = this;
    m_items.push_back(std::move(item));
    return m_items.back().get();
}

JumpBarMenu *JumpBarMenu::ensureSubmenu(JumpBarItem &item)
{
    if (!item.submenu) {
        item.submenu = std::make_unique<JumpBarMenu>();
        item.submenu->m_parentItem = &item;
    }
    return item.submenu.get();
}

JumpBarItem *JumpBarMenu::itemAtIndexPath(const IndexPath &path) const
{
    if (path.empty())
        return nullptr;
    const JumpBarMenu *menu = this;
    for (std::size_t level = 0; level + 1 < path.length(); ++level) {
        const JumpBarItem *item = menu->itemAt(path.indexAtPosition(level));
        if (!item || !item->submenu)
            return nullptr;
        menu = item->submenu.get();
    }
    return menu->itemAt(path.indexAtPosition(path.length() - 1));
}

IndexPath JumpBarMenu::indexPathOfItem(const JumpBarItem *item) const
{
    std::vector<std::size_t> reversed;
    while (item && item->menu) {
        const auto &siblings = item->menu->m_items;
        const auto it = std::find_if(siblings.begin(), siblings.end(), [&](const auto &p) { return p.get() == item; });
        if (it == siblings.end())
            return {};
        reversed.push_back(static_cast<std::size_t>(it - siblings.begin()));
        if (item->menu == this) {
            std::reverse(reversed.begin(), reversed.end());
            return IndexPath(std::move(reversed));
        }
        item = item->menu->m_parentItem;
    }
    return {};
}

std::unique_ptr<JumpBarMenu> buildJumpBarMenu(const std::vector<TOrbMDBFile *> &files, const TOrbMDBFile *selectedFile,
                                              const TOrbMDBFile *loading)
{
    if (files.empty() || !selectedFile)
        return nullptr;
    auto menu = std::make_unique<JumpBarMenu>();
    for (TOrbMDBFile *file : files) {
        JumpBarItem *item = menu->addItem(file->name(), JumpBarImage::File, BrowserItem::ofFile(file));
        if (file != loading && file->active() && !file->tables().empty())
            addTableItems(*item);
    }
    return menu;
}

void addTableItems(JumpBarItem &fileItem)
{
    TOrbMDBFile *file = fileItem.object.file;
    if (!file)
        return;
    JumpBarMenu *submenu = JumpBarMenu::ensureSubmenu(fileItem);
    for (const auto &table : file->tables())
        submenu->addItem(table->name(), JumpBarImage::Table, BrowserItem::ofTable(table.get()));
}

JumpBarItem *locationItem(const JumpBarMenu *menu, const TOrbMDBFile *selectedFile, const TOrbMDBTable *selectedTable)
{
    if (!menu || !selectedFile)
        return nullptr;
    for (const auto &item : menu->items()) {
        if (item->object.file != selectedFile)
            continue;
        if (selectedTable && item->submenu)
            for (const auto &child : item->submenu->items())
                if (child->object.table == selectedTable)
                    return child.get();
        return item.get();
    }
    return nullptr;
}

} // namespace vellum
