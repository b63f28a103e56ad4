#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace pomvar {

// Which menu data changed on the server since it was last asked.
struct MenuDataStatus
{
    bool appFolderModified = false;
    bool recentAppsModified = false;
    bool appcatsModified = false;
    bool pinnedAppsModified = false;

    // Strict: stops the process unless all four keys hold booleans.
    static MenuDataStatus decode(std::string_view json);
    nlohmann::json toJson() const;
};

} // namespace pomvar
