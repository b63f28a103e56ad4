#include "FakeMenus.h"

#include "FakeRuntimeServer.h"

#include <stdexcept>

namespace pomvar::test {

void FakeMenus::addApp(const App& app)
{
    m_all.push_back({ { "appkey", app.key },
                      { "name", app.name },
                      { "bundleid", "" },
                      { "iconpath", app.icon },
                      { "iconpath2x", app.icon2x },
                      { "pinned", app.pinned } });
}

void FakeMenus::addApps(int count, const std::string& icon, const std::string& icon2x)
{
    for (int i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        addApp({ "app" + number,
                 "App " + std::string(4 - number.size(), '0') + number,
                 icon,
                 icon2x });
    }
}

void FakeMenus::pin(const std::string& key)
{
    m_pinned.push_back(key);
    for (nlohmann::json& app : m_all)
        if (app["appkey"] == key)
            app["pinned"] = true;
}

void FakeMenus::addCategory(const std::string& name, const std::vector<std::string>& keys)
{
    m_categories.push_back(name);
    m_members[name] = keys;
}

nlohmann::json FakeMenus::apps(const std::vector<std::string>& keys, bool withPinned) const
{
    nlohmann::json list = nlohmann::json::array();
    for (const std::string& key : keys) {
        const auto app =
            std::find_if(m_all.begin(), m_all.end(), [&](auto& a) { return a["appkey"] == key; });
        if (app == m_all.end())
            throw std::invalid_argument("FakeMenus: unknown app " + key);
        list.push_back(*app);
        if (!withPinned)
            list.back().erase("pinned");
    }
    return list;
}

nlohmann::json FakeMenus::myApps() const
{
    nlohmann::json members = nlohmann::json::object();
    for (const auto& [name, keys] : m_members.items())
        members[name] = apps(keys.get<std::vector<std::string>>(), true);
    return { { "pinnedapps", apps(m_pinned, false) },
             { "appcats", m_categories },
             { "appcatapps", members },
             { "renamedAppcats", nlohmann::json::array() } };
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

} // namespace pomvar::test
