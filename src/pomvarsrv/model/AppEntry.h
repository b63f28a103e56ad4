#pragma once

#include <string>

namespace pomvar::srv {

// One installed app as the menus show it. The key is the desktop file id.
struct AppEntry
{
    std::string key;
    std::string name;
    std::string bundleId;
    std::string iconPath;
    std::string iconPath2x;

    bool operator==(const AppEntry&) const = default;
};

} // namespace pomvar::srv
