#include "MenuPayloads.h"

#include <nlohmann/json.hpp>

#include <unordered_set>

namespace pomvar::srv {

namespace {

using Json = nlohmann::json;

std::string dump(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json appObject(const AppEntry& app)
{
    return Json{ { "appkey", app.key },
                 { "name", app.name },
                 { "bundleid", app.bundleId },
                 { "iconpath", app.iconPath },
                 { "iconpath2x", app.iconPath2x } };
}

Json appObject(const AppEntry& app, bool pinned)
{
    Json object = appObject(app);
    object["pinned"] = pinned;
    return object;
}

class PinSet
{
public:
    explicit PinSet(const Store& store)
        : m_pins(store.pins().begin(), store.pins().end())
    {}
    bool contains(const std::string& key) const { return m_pins.count(key) != 0; }

private:
    std::unordered_set<std::string> m_pins;
};

} // namespace

std::string MenuPayloads::allApps(const InstalledApps& apps, const Store& store)
{
    const PinSet pins(store);
    Json list = Json::array();
    for (const auto& app : apps.all())
        list.push_back(appObject(app, pins.contains(app.key)));
    return dump(list);
}

std::string MenuPayloads::recentApps(const InstalledApps& apps, const Store& store)
{
    const PinSet pins(store);
    Json list = Json::array();
    for (const auto& key : store.recent()) {
        if (const AppEntry* app = apps.find(key))
            list.push_back(appObject(*app, pins.contains(key)));
    }
    return dump(list);
}

std::string MenuPayloads::myApps(const InstalledApps& apps,
                                 const Store& store,
                                 const std::vector<Rename>& renames)
{
    const PinSet pins(store);
    Json pinned = Json::array();
    for (const auto& key : store.pins()) {
        if (const AppEntry* app = apps.find(key))
            pinned.push_back(appObject(*app));
    }
    Json names = Json::array();
    Json members = Json::object();
    for (const auto& category : store.categories()) {
        Json list = Json::array();
        for (const auto& key : category.apps) {
            if (const AppEntry* app = apps.find(key))
                list.push_back(appObject(*app, pins.contains(key)));
        }
        names.push_back(category.name);
        members[category.name] = std::move(list);
    }
    Json renamed = Json::array();
    for (const auto& [from, to] : renames)
        renamed.push_back({ { "old", from }, { "new", to } });
    return dump(Json{ { "pinnedapps", std::move(pinned) },
                      { "appcats", std::move(names) },
                      { "appcatapps", std::move(members) },
                      { "renamedAppcats", std::move(renamed) } });
}

} // namespace pomvar::srv
