#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// The runtime protocol's vocabulary, shared by the front end, the runtime server and the tests:
// the request ids and the exact request texts, and the field names of replies and payloads.
namespace pomvar {

// The organizer pane a request opens; sent as its integer value.
enum class OrganizerDlgMode
{
    organize = 0,
    organizeApp = 1,
    settings = 2,
};

namespace request {

inline constexpr std::string_view getAppStatus = "get-app-status";
inline constexpr std::string_view getUserPrefs = "get-user-prefs";
inline constexpr std::string_view getMenuDataModifiedStatus = "get-menu-data-modified-status";
inline constexpr std::string_view getMyAppsMenuData = "get-myapps-menu-data";
inline constexpr std::string_view getRecentAppsMenuData = "get-recentapps-menu-data";
inline constexpr std::string_view getAllAppsMenuData = "get-allapps-menu-data";
inline constexpr std::string_view toggleSetAppcatId = "toggle-set-appcat";
inline constexpr std::string_view checkUpdateAvailable = "check-update-available";
inline constexpr std::string_view getAppUpdateStatus = "get-app-update-status";
inline constexpr std::string_view checkUpdates = "check-updates";
inline constexpr std::string_view organizerId = "organizer";
inline constexpr std::string_view launchId = "launch";
inline constexpr std::string_view getInfoAppId = "get-info-app";
inline constexpr std::string_view togglePinAppId = "toggle-pin-app";
inline constexpr std::string_view createNewAppcatCxtmnuId = "create-new-appcat-cxtmnu";
inline constexpr std::string_view getInfoAppcatId = "get-info-appcat";
inline constexpr std::string_view appSearch = "app-search";
inline constexpr std::string_view about = "about";
inline constexpr std::string_view quit = "quit";
// Drag and drop in the panel.
inline constexpr std::string_view placePinnedAppId = "place-pinned-app";
inline constexpr std::string_view placeAppcatId = "place-appcat";
inline constexpr std::string_view placeAppcatAppId = "place-appcat-app";

// The search in the panel's place, and the typing the panel caught before the search window had
// the keyboard. Their texts are JSON, strings escaped.
// The next "app-search" opens at a place ("x", "y": the panel's top left) instead of centred.
inline constexpr std::string_view appSearchPlaceId = "app-search-place";
// Opens the search window at a place, empty, and makes it keep the keys typed into it until
// "app-search-typed": the panel still holds the keyboard and sends what it caught first. Its
// reply names the window ("window": the X11 window id, 0 elsewhere), so that the panel can see
// when that window has the focus.
inline constexpr std::string_view appSearchAtId = "app-search-at";
// A key the panel caught, for the search window: "key" and "modifiers" (Qt's values), "text".
inline constexpr std::string_view appSearchKeyId = "app-search-key";
// Every key the panel caught has been sent: the search window takes the ones typed into it.
inline constexpr std::string_view appSearchTyped = "app-search-typed";
// The next window the server shows takes the focus with this token ("token"): an XDG activation
// token, or an X11 startup id whose "_TIME" part is the timestamp of the user's action.
inline constexpr std::string_view activationTokenId = "activation-token";

// The requests whose reply the front end reads; the server answers these and nothing else.
inline constexpr std::array<std::string_view, 10> awaited = {
    getAppStatus,          getUserPrefs,       getMenuDataModifiedStatus, getMyAppsMenuData,
    getRecentAppsMenuData, getAllAppsMenuData, toggleSetAppcatId,         checkUpdateAvailable,
    getAppUpdateStatus,    appSearchAtId,
};
// The requests sent without waiting for anything back.
inline constexpr std::array<std::string_view, 17> fireAndForget = {
    checkUpdates,
    organizerId,
    launchId,
    getInfoAppId,
    togglePinAppId,
    createNewAppcatCxtmnuId,
    getInfoAppcatId,
    appSearch,
    about,
    quit,
    placePinnedAppId,
    placeAppcatId,
    placeAppcatAppId,
    appSearchPlaceId,
    appSearchKeyId,
    appSearchTyped,
    activationTokenId,
};

bool expectsReply(std::string_view id);

// What a request carries besides its id; each field is required.
enum class Fields
{
    none,
    appkey,          // a string
    appcat,          // a string
    appkeyAndAppcat, // two strings
    paneAndItemkey,  // an integer, then a string or null
    // The drops: strings, read as JSON only.
    appkeyAndBeforekey,
    appcatAndBeforekey,
    appkeyAppcatAndBeforekey,
    place,    // "x" and "y", integers
    keyPress, // "key" and "modifiers", integers, and "text", a string
    token,    // "token", a string
};
// The fields of a request of the catalogue; nothing for an unknown id.
std::optional<Fields> fieldsOf(std::string_view id);

// The request texts, byte for byte. Values are pasted in as given, without any escaping: the
// server is written against these exact texts.
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

// The drops of the panel, in the layout of the texts above but JSON, their values escaped: the
// server reads them as JSON only. Each puts its item just before `beforeKey` (an app key, or a
// category name for place-appcat), or last when that is empty or not in the list.
// Pins the app there, or moves it when it is pinned already.
std::string placePinnedApp(std::string_view appKey, std::string_view beforeKey);
// Moves the category.
std::string placeAppcat(std::string_view appCategory, std::string_view beforeKey);
// Files the app into the category there, or moves it when it is filed there already.
std::string placeAppcatApp(std::string_view appKey,
                           std::string_view appCategory,
                           std::string_view beforeKey);
// The search's requests, in the same layout; their strings are escaped as JSON.
std::string appSearchPlace(int x, int y);
std::string appSearchAt(int x, int y);
std::string appSearchKey(int key, int modifiers, std::string_view text);
std::string activationToken(std::string_view token);

} // namespace request

// Field names of the replies and menu payloads.
namespace field {
inline constexpr const char* appkey = "appkey";
// Request fields.
inline constexpr const char* appcat = "appcat";
inline constexpr const char* beforekey = "beforekey";
// Payload fields.
inline constexpr const char* name = "name";
inline constexpr const char* bundleid = "bundleid";
inline constexpr const char* iconpath = "iconpath";
inline constexpr const char* iconpath2x = "iconpath2x";
inline constexpr const char* pinned = "pinned";
inline constexpr const char* pinnedapps = "pinnedapps";
inline constexpr const char* appcats = "appcats";
inline constexpr const char* appcatapps = "appcatapps";
inline constexpr const char* renamedAppcats = "renamedAppcats";
inline constexpr const char* renamedOld = "old";
inline constexpr const char* renamedNew = "new";
inline constexpr const char* isset = "isset";
inline constexpr const char* isUpdateAvailable = "isUpdateAvailable";
inline constexpr const char* status = "status";
// The requests of the search in the panel's place, and the reply of "app-search-at".
inline constexpr const char* x = "x";
inline constexpr const char* y = "y";
inline constexpr const char* key = "key";
inline constexpr const char* modifiers = "modifiers";
inline constexpr const char* text = "text";
inline constexpr const char* token = "token";
inline constexpr const char* window = "window";
} // namespace field

// The "status" of a get-app-update-status reply.
namespace updateStatus {
// Nothing to install: the poll stops.
inline constexpr std::string_view noUpdate = "noUpdate";
// Newer programs are installed, and the user has not yet asked to restart into them.
inline constexpr std::string_view updateAvailable = "updateAvailable";
// The user asked to restart: the front end quits, then the runtime server restarts Pomvar.
inline constexpr std::string_view readyToInstall = "readyToInstall";
} // namespace updateStatus

} // namespace pomvar
