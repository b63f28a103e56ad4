#pragma once

#include "pomvarsrv/model/InstalledApps.h"
#include "pomvarsrv/model/Store.h"

#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

// The three menu-data replies, as JSON text. Apps that are not installed, or hidden, are left out
// of every payload, so whatever My Apps and Recent name is also in All Apps. Plain C++.
class MenuPayloads
{
public:
    using Rename = std::pair<std::string, std::string>; // old name, new name

    static std::string allApps(const InstalledApps& apps, const Store& store);
    static std::string recentApps(const InstalledApps& apps, const Store& store);
    static std::string myApps(const InstalledApps& apps,
                              const Store& store,
                              const std::vector<Rename>& renames);
};

} // namespace pomvar::srv
