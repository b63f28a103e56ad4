#include "model/MenuPayloadReader.h"

#include "ipc/Output.h"
#include "model/LenientJson.h"

namespace pomvar {

TreeItem MenuPayloadReader::appItem(const nlohmann::json& app, bool inPinnedBlock)
{
    TreeItem item;
    item.id = lenient::text(app, "appkey");
    item.name = lenient::text(app, "name");
    item.isPinnedAppMenuItem = inPinnedBlock;
    item.isPinned = inPinnedBlock || lenient::boolean(app, "pinned");
    item.bundleID = lenient::text(app, "bundleid");
    item.iconPath = lenient::text(app, "iconpath");
    item.iconPath2x = lenient::text(app, "iconpath2x");
    return item;
}

void MenuPayloadReader::readAllApps(const nlohmann::json& payload, MenuList& allApps)
{
    // An object is not expected here, but its members are read as apps in whatever order.
    if (!payload.is_array() && !payload.is_object())
        return;
    for (const auto& app : payload)
        allApps.append(appItem(app, false));
}

void MenuPayloadReader::readRecentApps(const nlohmann::json& payload, MenuList& recentApps)
{
    if (!payload.is_array())
        return;
    for (const auto& app : payload)
        recentApps.append(appItem(app, false));
}

void MenuPayloadReader::readMyApps(const nlohmann::json& payload, MenuList& myApps)
{
    for (const auto& app : lenient::array(payload, "pinnedapps"))
        myApps.append(appItem(app, true));

    const auto& membersByCategory = lenient::object(payload, "appcatapps");
    for (const auto& categoryName : lenient::array(payload, "appcats")) {
        const std::string name = lenient::text(categoryName);
        const auto members = membersByCategory.find(name);
        if (members == membersByCategory.end())
            fatalStop(concat("PomvarViewModel.getMyAppsMenuData(): category \"",
                             name,
                             "\" has no member in \"appcatapps\""));
        std::vector<TreeItem> children;
        if (members->is_array()) {
            for (const auto& app : *members)
                children.push_back(appItem(app, false));
        }
        TreeItem category;
        category.id = name;
        category.name = name;
        category.children = std::move(children);
        myApps.append(std::move(category));
    }
}

} // namespace pomvar
