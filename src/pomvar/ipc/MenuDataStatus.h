#pragma once

namespace pomvar {

// Which menu data changed on the server since it was last asked.
struct MenuDataStatus
{
    bool appFolderModified = false;
    bool recentAppsModified = false;
    bool appcatsModified = false;
    bool pinnedAppsModified = false;
};

} // namespace pomvar
