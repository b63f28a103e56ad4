#include "model/MenuPayloadReader.h"

#include "ipc/LenientJson.h"
#include "log/Output.h"

#include <map>
#include <string_view>

namespace pomvar {

namespace {

using simdjson::SUCCESS;
using simdjson::dom::array;
using simdjson::dom::object;

// The members of an object as nlohmann holds them: ordered by key, the last of repeated keys.
std::map<std::string_view, simdjson::dom::element> byKey(object members)
{
    std::map<std::string_view, simdjson::dom::element> sorted;
    for (const auto field : members)
        sorted.insert_or_assign(field.key, field.value);
    return sorted;
}

} // namespace

TreeItem MenuPayloadReader::appItem(Value app, bool inPinnedBlock)
{
    TreeItem item;
    item.isPinnedAppMenuItem = inPinnedBlock;
    item.isPinned = inPinnedBlock;
    item.bundleID.emplace();
    item.iconPath.emplace();
    item.iconPath2x.emplace();
    object fields;
    if (app.get(fields) != SUCCESS)
        return item;
    // One pass over the members; a later repeat of a key overwrites the earlier value.
    bool pinned = false;
    for (const auto field : fields) {
        const std::string_view key = field.key;
        if (key == "appkey")
            item.id = lenient::text(field.value);
        else if (key == "name")
            item.name = lenient::text(field.value);
        else if (key == "pinned")
            pinned = lenient::boolean(field.value);
        else if (key == "bundleid")
            item.bundleID = lenient::text(field.value);
        else if (key == "iconpath")
            item.iconPath = lenient::text(field.value);
        else if (key == "iconpath2x")
            item.iconPath2x = lenient::text(field.value);
    }
    item.isPinned = inPinnedBlock || pinned;
    return item;
}

void MenuPayloadReader::readAllApps(Value payload, MenuList& allApps)
{
    array apps;
    object members;
    if (payload.get(apps) == SUCCESS) {
        allApps.reserve(apps.size());
        for (const auto app : apps)
            allApps.append(appItem(app, false));
    } else if (payload.get(members) == SUCCESS) {
        // An object is not expected here, but its members are read as apps in key order.
        for (const auto& [key, app] : byKey(members))
            allApps.append(appItem(app, false));
    }
}

void MenuPayloadReader::readRecentApps(Value payload, MenuList& recentApps)
{
    array apps;
    if (payload.get(apps) != SUCCESS)
        return;
    for (const auto app : apps)
        recentApps.append(appItem(app, false));
}

void MenuPayloadReader::readMyApps(Value payload, MenuList& myApps)
{
    if (const auto pinned = lenient::array(payload, "pinnedapps")) {
        for (const auto app : *pinned)
            myApps.append(appItem(app, true));
    }
    const auto categories = lenient::array(payload, "appcats");
    if (!categories)
        return;
    const auto membersObject = lenient::object(payload, "appcatapps");
    const auto membersByCategory =
        membersObject ? byKey(*membersObject) : std::map<std::string_view, Value>();
    for (const auto categoryName : *categories) {
        const std::string name = lenient::text(categoryName);
        const auto members = membersByCategory.find(name);
        if (members == membersByCategory.end())
            fatalStop(concat("PomvarViewModel.getMyAppsMenuData(): category \"",
                             name,
                             "\" has no member in \"appcatapps\""));
        std::vector<TreeItem> children;
        array apps;
        if (members->second.get(apps) == SUCCESS) {
            for (const auto app : apps)
                children.push_back(appItem(app, false));
        }
        TreeItem category;
        category.id = name;
        category.name = name;
        category.children = std::move(children);
        myApps.append(std::move(category));
    }
}

std::vector<CategoryRename> MenuPayloadReader::readRenames(Value payload)
{
    std::vector<CategoryRename> renames;
    const auto list = lenient::array(payload, "renamedAppcats");
    if (!list)
        return renames;
    for (const auto rename : *list) {
        const auto oldName = lenient::member(rename, "old");
        const auto newName = lenient::member(rename, "new");
        if (oldName && newName)
            renames.push_back({ lenient::text(*oldName), lenient::text(*newName), {} });
        else
            renames.push_back({ {}, {}, simdjson::to_string(rename) });
    }
    return renames;
}

} // namespace pomvar
