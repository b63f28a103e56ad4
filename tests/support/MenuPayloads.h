#pragma once

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

// Builders for the runtime server's menu payloads, for tests and benchmarks.
namespace pomvar::test {

inline nlohmann::json appJson(const std::string& key,
                              const std::string& name,
                              bool pinned = false,
                              const std::string& iconPath = "/icons/24/app.png",
                              const std::string& iconPath2x = "/icons/48/app.png")
{
    return { { "appkey", key },
             { "name", name },
             { "bundleid", key + ".id" },
             { "iconpath", iconPath },
             { "iconpath2x", iconPath2x },
             { "pinned", pinned } };
}

// "count" apps named "App 0000".., keyed "app0000.desktop"..
inline nlohmann::json allAppsJson(int count)
{
    nlohmann::json apps = nlohmann::json::array();
    for (int i = 0; i < count; ++i) {
        char number[16];
        std::snprintf(number, sizeof number, "%04d", i);
        apps.push_back(
            appJson(std::string("app") + number + ".desktop", std::string("App ") + number));
    }
    return apps;
}

struct CategoryJson
{
    std::string name;
    std::vector<nlohmann::json> apps;
};

inline nlohmann::json myAppsJson(
    const std::vector<nlohmann::json>& pinned,
    const std::vector<CategoryJson>& categories,
    const std::vector<std::pair<std::string, std::string>>& renames = {})
{
    nlohmann::json payload = { { "pinnedapps", nlohmann::json::array() },
                               { "appcats", nlohmann::json::array() },
                               { "appcatapps", nlohmann::json::object() },
                               { "renamedAppcats", nlohmann::json::array() } };
    for (const auto& app : pinned)
        payload["pinnedapps"].push_back(app);
    for (const auto& category : categories) {
        payload["appcats"].push_back(category.name);
        payload["appcatapps"][category.name] = category.apps;
    }
    for (const auto& [oldName, newName] : renames)
        payload["renamedAppcats"].push_back({ { "old", oldName }, { "new", newName } });
    return payload;
}

inline nlohmann::json modifiedFlags(bool appFolder, bool recentApps, bool appcats, bool pinnedApps)
{
    return { { "appFolderModified", appFolder },
             { "recentAppsModified", recentApps },
             { "appcatsModified", appcats },
             { "pinnedAppsModified", pinnedApps } };
}

} // namespace pomvar::test
