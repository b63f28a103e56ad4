#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace pomvar::test {

// Real full-colour icons of the system's icon theme (Debian's adwaita-icon-theme), at 24 pixels
// for a 1x display and 48 for a 2x one, as the runtime server hands out app icons.
struct ThemeIcons
{
    struct Icon
    {
        QString path;
        QString path2x;
    };

    // Every icon found with both sizes, sorted by name; empty when the theme is not installed.
    static std::vector<Icon> all();
    // The icon of that name ("utilities-terminal"), or nothing when the theme lacks it.
    static std::optional<Icon> named(const QString& name);
};

} // namespace pomvar::test
