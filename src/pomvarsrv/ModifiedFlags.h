#pragma once

namespace pomvar::srv {

// Which menu data changed since the front end last asked.
struct ModifiedFlags
{
    bool appFolder = false;
    bool recentApps = false;
    bool appcats = false;
    bool pinnedApps = false;

    bool operator==(const ModifiedFlags&) const = default;
};

} // namespace pomvar::srv
