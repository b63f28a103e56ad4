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
        std::string key;
        std::string name;
        std::string icon;
        std::string icon2x;
        bool pinned = false;
    };

    void addApp(App app);
    // `count` apps named "App 0001"…, all with the same icon files.
    void addApps(int count, const std::string& icon, const std::string& icon2x);
    void pin(const std::string& key);
    void addCategory(const std::string& name, const std::vector<std::string>& keys);
    void addRecent(const std::string& key);

    nlohmann::json allApps() const;
    nlohmann::json myApps() const;
    nlohmann::json recentApps() const;
    // Replies to the three menu-data requests.
    void install(FakeRuntimeServer& server) const;
    // The default preferences with some fields changed.
    static nlohmann::json prefs(int density,
                                bool saveLastMenu,
                                bool oneExpAppCat,
                                bool saveExpAppCats = true,
                                bool animationFx = false);
    // A modified-flags reply that makes the next opening refetch every menu.
    static nlohmann::json everythingModified();

private:
    const App& app(const std::string& key) const;
    nlohmann::json appObject(const App& app, bool withPinned) const;

    std::vector<App> m_apps;
    std::vector<std::string> m_pinned;
    std::vector<std::pair<std::string, std::vector<std::string>>> m_categories;
    std::vector<std::string> m_recent;
};

} // namespace pomvar::test
