#include "wire/UserPaths.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace pomvar::paths {

namespace {

std::string home()
{
    if (const char* value = std::getenv("HOME"); value && *value)
        return value;
    const passwd* user = ::getpwuid(::getuid());
    return user && user->pw_dir ? user->pw_dir : "/";
}

// The folder named by `variable` when it is an absolute path, else `fallback` under HOME.
std::string xdgFolder(const char* variable, const char* fallback)
{
    if (const char* value = std::getenv(variable); value && value[0] == '/')
        return value;
    return home() + fallback;
}

} // namespace

std::string configHome()
{
    return xdgFolder("XDG_CONFIG_HOME", "/.config");
}

std::string cacheHome()
{
    return xdgFolder("XDG_CACHE_HOME", "/.cache");
}

std::string storeFile()
{
    return configHome() + "/pomvar/pomvarsrv.json";
}

std::string catalogueCache()
{
    return cacheHome() + "/pomvar/catalogue";
}

std::string iconCacheDir()
{
    return cacheHome() + "/pomvar/icons";
}

std::string autostartEntry()
{
    return configHome() + "/autostart/pomvar.desktop";
}

std::string pidFile()
{
    // The runtime folder is emptied at logout: a file left by a crash cannot outlive the login.
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime && runtime[0] == '/')
        return std::string(runtime) + "/pomvar/pomvar.pid";
    return cacheHome() + "/pomvar/pomvar.pid";
}

} // namespace pomvar::paths
