#pragma once

#include <QString>

#include <string>

namespace pomvar::srv {

// One installed app as its desktop entry describes it.
struct DesktopApp
{
    std::string id;   // desktop file id, "org.example.App.desktop"
    std::string name; // localised Name
    // The Icon key: an icon name of the theme, an absolute file path, or empty.
    QString icon;
};

} // namespace pomvar::srv
