#pragma once

#include "pomvarsrv/model/AppEntry.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace pomvar::srv {

// The installed apps in menu order, with lookup by key. Plain C++.
class InstalledApps
{
public:
    InstalledApps() = default;
    // `apps` must already be in menu order; a repeated key keeps its first entry.
    explicit InstalledApps(std::vector<AppEntry> apps);

    const std::vector<AppEntry>& all() const { return m_apps; }
    const AppEntry* find(const std::string& key) const;
    bool contains(const std::string& key) const { return find(key) != nullptr; }
    std::size_t size() const { return m_apps.size(); }

    // Replaces the icon paths of the apps whose key is given.
    void setIcons(const std::string& key, std::string iconPath, std::string iconPath2x);

private:
    std::vector<AppEntry> m_apps;
    std::unordered_map<std::string, std::size_t> m_index;
};

} // namespace pomvar::srv
