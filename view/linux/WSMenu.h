#pragma once

#include <memory>
#include <vector>

#include "core/MirelNamespace.h"
#include "view/WCMenuTypes.h"

MIREL_NAMESPACE_BEGIN

// One menu of the headless desktop: its items in order, each with the sub-menu it opens. A root
// menu is owned by the desktop from CreatePopupMenu to DisposeMenu; a sub-menu by its item.
// [main-thread]
struct WSMenu {
    struct WSEntry {
        PluginViewManager::WCMenuItemInfo m_Info;
        std::unique_ptr<WSMenu> m_SubMenu;
    };

    explicit WSMenu(const PluginViewManager::WCMenuCreationOptions &options) : m_Options(options) {}

    PluginViewManager::WCMenuCreationOptions m_Options;
    std::vector<WSEntry> m_Items;
};

MIREL_NAMESPACE_END
