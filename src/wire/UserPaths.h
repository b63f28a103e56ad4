#pragma once

#include <string>

// Where each user's own files of Pomvar are, by the XDG Base Directory rules; both programs and
// the tests agree on these, as on the install paths (InstallPaths.h). A folder variable that is
// unset, empty or relative is ignored, as the rules say; each path is read from the environment
// when asked, so a test that points the variables elsewhere is followed.
namespace pomvar::paths {

// $XDG_CONFIG_HOME, or ~/.config.
std::string configHome();
// $XDG_CACHE_HOME, or ~/.cache.
std::string cacheHome();

// The runtime server's store: pins, categories, Recent, preferences.
std::string storeFile();
// The runtime server's catalogue of the installed apps, for a quick start.
std::string catalogueCache();
// The runtime server's renders of the apps' icons.
std::string iconCacheDir();
// The XDG autostart entry that starts Pomvar at login.
std::string autostartEntry();
// The front end's PID file, whose presence marks a running front end: in $XDG_RUNTIME_DIR/pomvar,
// or $XDG_CACHE_HOME/pomvar without a runtime folder.
std::string pidFile();

} // namespace pomvar::paths
