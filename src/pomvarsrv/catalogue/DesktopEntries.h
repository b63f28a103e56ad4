#pragma once

#include <functional>
#include <string>

// GIO's type, declared as its header does, so that this header does not need GIO's.
typedef struct _GDesktopAppInfo GDesktopAppInfo;

namespace pomvar::srv {

// The desktop entries g_app_info_get_all() would list, read one at a time: that listing holds
// every entry's key file at once, megabytes for thousands of apps. The folders and their
// precedence are GIO's own (XDG_DATA_HOME, then XDG_DATA_DIRS, each with "applications"), and
// so are the ids ("kde-app.desktop" for kde/app.desktop) and the masking: an id found in a folder
// hides the same id in the folders after it, whether or not its entry loads. An entry loads
// when GIO accepts it (a Desktop Entry of type Application whose TryExec and Exec programs are
// found); hidden ones are left out. Safe on any thread.
class DesktopEntries
{
public:
    using Visit = std::function<void(const std::string& id, GDesktopAppInfo* entry)>;

    // Calls `visit` with each entry in the order of their ids; the entry lives for the call.
    static void forEach(const Visit& visit);
};

} // namespace pomvar::srv
