#include "FakeMenus.h"

#include "FakeRuntimeServer.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace pomvar::test {

void FakeMenus::addApp(App app)
{
    m_apps.push_back(std::move(app));
}

void FakeMenus::addApps(int count, const std::string& icon, const std::string& icon2x)
{
    for (int i = 1; i <= count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "App %04d", i);
        addApp({ "app" + std::to_string(i), name, icon, icon2x, false });
    }
}

void FakeMenus::pin(const std::string& key)
{
    m_pinned.push_back(key);
    for (App& app : m_apps)
        if (app.key == key)
            app.pinned = true;
}

void FakeMenus::addCategory(const std::string& name, const std::vector<std::string>& keys)
{
    m_categories.emplace_back(name, keys);
}

void FakeMenus::addRecent(const std::string& key)
{
    m_recent.push_back(key);
}

const FakeMenus::App& FakeMenus::app(const std::string& key) const
{
    const auto found =
        std::find_if(m_apps.begin(), m_apps.end(), [&](const App& a) { return a.key == key; });
    if (found == m_apps.end())
        throw std::invalid_argument("FakeMenus: unknown app " + key);
    return *found;
}

nlohmann::json FakeMenus::appObject(const App& app, bool withPinned) const
{
    nlohmann::json object = { { "appkey", app.key },
                              { "name", app.name },
                              { "bundleid", "" },
                              { "iconpath", app.icon },
                              { "iconpath2x", app.icon2x } };
    if (withPinned)
        object["pinned"] = app.pinned;
    return object;
}

nlohmann::json FakeMenus::allApps() const
{
    nlohmann::json list = nlohmann::json::array();
    for (const App& app : m_apps)
        list.push_back(appObject(app, true));
    return list;
}

nlohmann::json FakeMenus::myApps() const
{
    nlohmann::json pinned = nlohmann::json::array();
    for (const std::string& key : m_pinned)
        pinned.push_back(appObject(app(key), false));
    nlohmann::json names = nlohmann::json::array();
    nlohmann::json members = nlohmann::json::object();
    for (const auto& [name, keys] : m_categories) {
        names.push_back(name);
        nlohmann::json apps = nlohmann::json::array();
        for (const std::string& key : keys)
            apps.push_back(appObject(app(key), true));
        members[name] = apps;
    }
    return { { "pinnedapps", pinned },
             { "appcats", names },
             { "appcatapps", members },
             { "renamedAppcats", nlohmann::json::array() } };
}

nlohmann::json FakeMenus::recentApps() const
{
    nlohmann::json list = nlohmann::json::array();
    for (const std::string& key : m_recent)
        list.push_back(appObject(app(key), true));
    return list;
}

void FakeMenus::install(FakeRuntimeServer& server) const
{
    using Reply = FakeRuntimeServer::Reply;
    server.setDefaultReply("get-allapps-menu-data", Reply::json(allApps()));
    server.setDefaultReply("get-myapps-menu-data", Reply::json(myApps()));
    server.setDefaultReply("get-recentapps-menu-data", Reply::json(recentApps()));
}

nlohmann::json FakeMenus::prefs(int density,
                                bool saveLastMenu,
                                bool oneExpAppCat,
                                bool saveExpAppCats,
                                bool animationFx)
{
    return { { "MenuDensity", density },
             { "AnimationFx", animationFx },
             { "SaveExpAppCats", saveExpAppCats },
             { "SaveLastMenu", saveLastMenu },
             { "OneExpAppCat", oneExpAppCat } };
}

nlohmann::json FakeMenus::everythingModified()
{
    return { { "appFolderModified", true },
             { "recentAppsModified", false },
             { "appcatsModified", false },
             { "pinnedAppsModified", false } };
}

} // namespace pomvar::test
