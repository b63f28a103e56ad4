#pragma once

#include <cstdint>

// The records the runtime server sends and the front end reads strictly, every key present with
// its exact JSON type; their JSON keys are spelled here once.
namespace pomvar {

// The user's menu preferences, owned by the runtime server, with their defaults.
struct UserPrefs
{
    static constexpr const char* kMenuDensity = "MenuDensity";
    static constexpr const char* kAnimationFx = "AnimationFx";
    static constexpr const char* kSaveExpAppCats = "SaveExpAppCats";
    static constexpr const char* kSaveLastMenu = "SaveLastMenu";
    static constexpr const char* kOneExpAppCat = "OneExpAppCat";

    std::int64_t menuDensity = 0;
    bool animationFx = true;
    bool saveExpAppCats = true;
    bool saveLastMenu = true;
    bool oneExpAppCat = false;

    bool operator==(const UserPrefs&) const = default;
};

// What the runtime server reports about itself.
struct AppStatus
{
    static constexpr const char* kReady = "ready";
    static constexpr const char* kUpdateFinished = "updateFinished";

    bool ready = false;
    bool updateFinished = false;

    bool operator==(const AppStatus&) const = default;
};

// Which menu data changed on the server since the front end last asked.
struct MenuDataStatus
{
    static constexpr const char* kAppFolderModified = "appFolderModified";
    static constexpr const char* kRecentAppsModified = "recentAppsModified";
    static constexpr const char* kAppcatsModified = "appcatsModified";
    static constexpr const char* kPinnedAppsModified = "pinnedAppsModified";

    bool appFolderModified = false;
    bool recentAppsModified = false;
    bool appcatsModified = false;
    bool pinnedAppsModified = false;

    bool operator==(const MenuDataStatus&) const = default;
};

} // namespace pomvar
