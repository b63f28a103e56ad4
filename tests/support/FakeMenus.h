#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace pomvar::test {

class FakeRuntimeServer;

// Menu payloads as the runtime server sends them, built up in a test and installed as the fake
// server's replies.
class FakeMenus
{
public:
    struct App
    {
        std::string key, name, icon, icon2x;
        bool pinned = false;
    };

    void addApp(const App& app);
    // `count` apps named "App 0001"…, all with the same icon files.
    void addApps(int count, const std::string& icon, const std::string& icon2x);
    void pin(const std::string& key);
    void addCategory(const std::string& name, const std::vector<std::string>& keys);
    void addRecent(const std::string& key) { m_recent.push_back(key); }

    nlohmann::json allApps() const { return m_all; }
    nlohmann::json myApps() const;
    nlohmann::json recentApps() const { return apps(m_recent, true); }
    // Replies to the three menu-data requests.
    void install(FakeRuntimeServer& server) const;
    // The default preferences with some fields changed.
    static nlohmann::json prefs(int density,
                                bool saveLastMenu,
                                bool oneExpAppCat,
                                bool saveExpAppCats = true,
                                bool animationFx = false);
    // A modified-flags reply with only the named flags ("pinnedAppsModified", …) set.
    template <typename... Flags>
    static nlohmann::json modified(const Flags&... flag)
    {
        nlohmann::json flags = { { "appFolderModified", false },
                                 { "recentAppsModified", false },
                                 { "appcatsModified", false },
                                 { "pinnedAppsModified", false } };
        ((flags.at(flag) = true), ...);
        return flags;
    }

private:
    nlohmann::json apps(const std::vector<std::string>& keys, bool withPinned) const;

    nlohmann::json m_all = nlohmann::json::array();
    std::vector<std::string> m_pinned;
    nlohmann::json m_categories = nlohmann::json::array();
    nlohmann::json m_members = nlohmann::json::object();
    std::vector<std::string> m_recent;
};

} // namespace pomvar::test
