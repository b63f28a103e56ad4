#pragma once

#include "pomvarsrv/model/InstalledApps.h"

#include <map>
#include <string>
#include <vector>

namespace pomvar::srv {

// Makes sure that every icon file a menu names exists when the menu is sent: the front end stops
// on an icon it cannot read, and a cache cleaner may delete renders at any time. A missing file
// is replaced by the fallback (the generic icon) until it is rendered again.
//
// Deleting a file changes its folder's modification time, so only the files of folders changed
// since the last check are looked at. A stat each would cost some 20 ms for the icon cache's
// 10,000 files at 5,000 apps; a changed folder that holds many of them is listed once instead.
class IconCheck
{
public:
    // The files sent in place of missing ones; without them nothing is checked.
    void setFallback(std::string path, std::string path2x);
    // The apps' paths changed: the next check looks at every file.
    void forget() { m_folders.clear(); }

    // Replaces the icon paths of the apps whose files are gone by the fallback; their keys.
    std::vector<std::string> repair(InstalledApps& apps);

private:
    struct Stamp
    {
        unsigned long long device = 0;
        unsigned long long inode = 0;
        long long modified = 0; // nanoseconds
        long long changed = 0;
        bool operator==(const Stamp&) const = default;
    };
    static Stamp stampOf(const std::string& folder);
    // A stat of each known folder: the check of every reply while nothing changed.
    bool foldersUnchanged() const;

    std::string m_fallback;
    std::string m_fallback2x;
    // Every folder of an icon file, as it was when the last check began.
    std::map<std::string, Stamp, std::less<>> m_folders;
};

} // namespace pomvar::srv
