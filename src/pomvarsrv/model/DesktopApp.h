#pragma once

#include <QString>
#include <QStringList>

#include <string>

namespace pomvar::srv {

// One installed app as its desktop entry describes it.
struct DesktopApp
{
    std::string id;   // desktop file id, "org.example.App.desktop"
    std::string name; // localised Name
    // The Icon key: an icon name of the theme, an absolute file path, or empty.
    QString icon;
    // What the search reads besides the name.
    QString untranslatedName;
    QString genericName;
    QStringList keywords;
    QString comment;
    QString program; // base name of the Exec line's program

    bool operator==(const DesktopApp&) const = default;
};

} // namespace pomvar::srv
