#pragma once

#include "FakeRuntimeServer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace pomvar::test {

// Menu payloads as the runtime server sends them, built up in a test and installed as the fake
// server's replies.
class FakeMenus
{
public:
    using json = nlohmann::json;
    struct App
    {
        std::string key, name, icon, icon2x;
        bool pinned = false;
    };

    void addApp(const App& app)
    {
        m_all.push_back({ { "appkey", app.key },
                          { "name", app.name },
                          { "bundleid", "" },
                          { "iconpath", app.icon },
                          { "iconpath2x", app.icon2x },
                          { "pinned", app.pinned } });
    }
    void pin(const std::string& key)
    {
        m_pinned.push_back(key);
        for (json& app : m_all)
            if (app["appkey"] == key)
                app["pinned"] = true;
    }
    void addCategory(const std::string& name, const std::vector<std::string>& keys)
    {
        m_categories.push_back(name);
        m_members[name] = keys;
    }
    void addRecent(const std::string& key) { m_recent.push_back(key); }

    json allApps() const { return m_all; }
    // Replies to the three menu-data requests.
    void install(FakeRuntimeServer& server) const
    {
        using Reply = FakeRuntimeServer::Reply;
        json members = json::object();
        for (const auto& [name, keys] : m_members)
            members[name] = apps(keys, true);
        server.setDefaultReply("get-allapps-menu-data", Reply::json(m_all));
        server.setDefaultReply("get-myapps-menu-data",
                               Reply::json({ { "pinnedapps", apps(m_pinned, false) },
                                             { "appcats", m_categories },
                                             { "appcatapps", members },
                                             { "renamedAppcats", json::array() } }));
        server.setDefaultReply("get-recentapps-menu-data", Reply::json(apps(m_recent, true)));
    }

    // The preferences: density, the last menu saved, one category open at a time, the open
    // categories kept, animations.
    static json prefs(int density, bool lastMenu, bool oneOpen, bool keep = true, bool fx = false)
    {
        return { { "MenuDensity", density },
                 { "AnimationFx", fx },
                 { "SaveExpAppCats", keep },
                 { "SaveLastMenu", lastMenu },
                 { "OneExpAppCat", oneOpen } };
    }
    // A modified-flags reply with only the named flags ("pinnedAppsModified", …) set.
    template <typename... Flags>
    static json modified(const Flags&... flag)
    {
        json flags = { { "appFolderModified", false },
                       { "recentAppsModified", false },
                       { "appcatsModified", false },
                       { "pinnedAppsModified", false } };
        ((flags.at(flag) = true), ...);
        return flags;
    }

private:
    json apps(const std::vector<std::string>& keys, bool withPinned) const
    {
        json list = json::array();
        for (const std::string& key : keys) {
            const auto app = std::find_if(
                m_all.begin(), m_all.end(), [&](const json& a) { return a["appkey"] == key; });
            if (app == m_all.end())
                throw std::invalid_argument("FakeMenus: unknown app " + key);
            list.push_back(*app);
            if (!withPinned)
                list.back().erase("pinned");
        }
        return list;
    }

    json m_all = json::array();
    std::vector<std::string> m_pinned, m_categories, m_recent;
    std::map<std::string, std::vector<std::string>> m_members;
};

} // namespace pomvar::test
