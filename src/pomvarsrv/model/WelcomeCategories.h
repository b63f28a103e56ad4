#pragma once

#include "pomvarsrv/model/AppCategory.h"

#include <QStringList>

#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

// The categories the welcome offers to start with: the freedesktop main categories of the apps,
// under the names menus usually give them ("Network" is "Internet"), in the user's language.
// Plain data in and out.
class WelcomeCategories
{
public:
    // An app's key and the freedesktop categories its entry lists.
    using App = std::pair<std::string, QStringList>;

    // Every category that would hold an app, filled with its apps in the order given; the
    // categories in the order of their names. An app goes into each main category it lists, but
    // not into "System" when it is one of the "Settings".
    static std::vector<AppCategory> from(const std::vector<App>& apps);
};

} // namespace pomvar::srv
