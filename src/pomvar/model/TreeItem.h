#pragma once

#include <optional>
#include <string>
#include <vector>

namespace pomvar {

// One row of a menu: an app, or a category of apps. Having `children` (even empty) is what
// makes a row a category. App rows always carry the three optional strings, possibly empty.
struct TreeItem
{
    std::string id; // app key, or category name
    std::string name;
    bool isPinnedAppMenuItem = false;
    bool isPinned = false;
    std::optional<std::string> bundleID;
    std::optional<std::string> iconPath;
    std::optional<std::string> iconPath2x;
    std::optional<std::vector<TreeItem>> children;

    bool isCategory() const { return children.has_value(); }

    friend bool operator==(const TreeItem&, const TreeItem&) = default;
};

} // namespace pomvar
