#pragma once

#include "pomvarsrv/providers/SearchProvider.h"

#include <vector>

namespace pomvar::srv {

// The search providers installed: the files share/gnome-shell/search-providers/*.ini of the XDG
// data folders (a file name found in an earlier folder hides the same name in a later one), each
// of version 2 and naming an installed app, in the order of their file names.
class SearchProviderFiles
{
public:
    static std::vector<SearchProvider> installed();
};

} // namespace pomvar::srv
