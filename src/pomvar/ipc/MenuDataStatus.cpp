#include "ipc/MenuDataStatus.h"

#include "ipc/StrictJsonReader.h"

namespace pomvar {

MenuDataStatus MenuDataStatus::decode(std::string_view json)
{
    const StrictJsonReader reader(json, "MenuDataStatus");
    MenuDataStatus status;
    status.appFolderModified = reader.boolean("appFolderModified");
    status.recentAppsModified = reader.boolean("recentAppsModified");
    status.appcatsModified = reader.boolean("appcatsModified");
    status.pinnedAppsModified = reader.boolean("pinnedAppsModified");
    return status;
}

nlohmann::json MenuDataStatus::toJson() const
{
    return { { "appFolderModified", appFolderModified },
             { "recentAppsModified", recentAppsModified },
             { "appcatsModified", appcatsModified },
             { "pinnedAppsModified", pinnedAppsModified } };
}

} // namespace pomvar
