#pragma once

#include "ipc/OrganizerDlgMode.h"

#include <string>
#include <string_view>

// The request texts the runtime server expects, byte for byte. Values are pasted in as given,
// without any escaping: the server is written against these exact texts.
namespace pomvar::request {

inline constexpr std::string_view getAppStatus = "get-app-status";
inline constexpr std::string_view getUserPrefs = "get-user-prefs";
inline constexpr std::string_view getMenuDataModifiedStatus = "get-menu-data-modified-status";
inline constexpr std::string_view getMyAppsMenuData = "get-myapps-menu-data";
inline constexpr std::string_view getRecentAppsMenuData = "get-recentapps-menu-data";
inline constexpr std::string_view getAllAppsMenuData = "get-allapps-menu-data";
inline constexpr std::string_view checkUpdateAvailable = "check-update-available";
inline constexpr std::string_view getAppUpdateStatus = "get-app-update-status";
inline constexpr std::string_view checkUpdates = "check-updates";
inline constexpr std::string_view appSearch = "app-search";
inline constexpr std::string_view about = "about";
inline constexpr std::string_view quit = "quit";

// "{\n    \"id\": \"<id>\"\n}" for requests without further fields.
std::string plain(std::string_view id);

std::string launch(std::string_view appKey);
std::string getInfoApp(std::string_view appKey);
std::string togglePinApp(std::string_view appKey);
std::string createNewAppcatCxtmnu(std::string_view appKey);
std::string getInfoAppcat(std::string_view appCategory);
// Ends in the seven bytes 22 0A 20 7D 20 20 20, unlike every other request.
std::string toggleSetAppcat(std::string_view appKey, std::string_view appCategory);
// An empty item key is sent as the bare word null.
std::string organizer(OrganizerDlgMode pane, std::string_view itemKey);

} // namespace pomvar::request
