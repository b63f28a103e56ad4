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
// Looking at every file costs a stat each (10,000 for 5,000 apps, some 15 ms), so a full pass is
// made only when a folder that holds icons has changed since the last one: deleting a file
// changes its folder's modification time, so unchanged folders mean unchanged files.
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
    bool foldersUnchanged() const;

    std::string m_fallback;
    std::string m_fallback2x;
    // Every folder of an icon file, as it was when the last full pass began.
    std::map<std::string, Stamp> m_folders;
};

} // namespace pomvar::srv
