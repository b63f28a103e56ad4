#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <string>

namespace pomvar::srv {

// What an app's desktop entry says, read through GIO when a window shows it (the catalogue keeps
// only what the menus and the search need).
struct AppDetails
{
    QString id; // desktop file id
    QString name;
    QString genericName;
    QString comment;
    QString path;           // the desktop file
    QString commandLine;    // the Exec line without its field codes (%U, %f, ...)
    QStringList categories; // freedesktop categories, as the entry lists them
    bool terminal = false;

    // The entry installed under that id now; nothing when there is none.
    static std::optional<AppDetails> read(const QString& desktopId);
    // The freedesktop categories of every entry, by desktop file id: one listing for all apps.
    static std::map<std::string, QStringList> categoriesOfAll();

    bool operator==(const AppDetails&) const = default;
};

} // namespace pomvar::srv
