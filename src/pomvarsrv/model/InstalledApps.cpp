#include "pomvarsrv/model/InstalledApps.h"

namespace pomvar::srv {

InstalledApps::InstalledApps(std::vector<AppEntry> apps)
{
    m_apps.reserve(apps.size());
    for (auto& app : apps) {
        if (m_index.emplace(app.key, m_apps.size()).second)
            m_apps.push_back(std::move(app));
    }
}

const AppEntry* InstalledApps::find(const std::string& key) const
{
    const auto it = m_index.find(key);
    return it == m_index.end() ? nullptr : &m_apps[it->second];
}

void InstalledApps::setIcons(const std::string& key, std::string iconPath, std::string iconPath2x)
{
    const auto it = m_index.find(key);
    if (it == m_index.end())
        return;
    m_apps[it->second].iconPath = std::move(iconPath);
    m_apps[it->second].iconPath2x = std::move(iconPath2x);
}

} // namespace pomvar::srv
