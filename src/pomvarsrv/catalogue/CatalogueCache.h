#pragma once

#include "pomvarsrv/model/AppEntry.h"
#include "pomvarsrv/model/DesktopApp.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace pomvar::srv {

// The last catalogue, with its icon renders, in $XDG_CACHE_HOME/pomvar/catalogue, so that a
// start can serve at once and check it afterwards. It is tied to what shaped it (the version,
// the XDG data folders, the desktop, the languages, the collation): under anything else it is
// not used. The file is written atomically and carries a SHA-1 of its content, so a damaged or
// foreign file is never trusted.
//
// Layout: "pomvar-catalogue 2\n", the environment line, the hex SHA-1 of what follows and "\n",
// then the fields of each app, each ended by a NUL: the menu's (key, name, bundle id, icon
// paths), then the search's (icon key, untranslated name, generic name, keywords separated by
// U+001F, comment, program). GIO hands out C strings, so no field holds a NUL.
class CatalogueCache
{
public:
    explicit CatalogueCache(QString path = defaultPath());
    static QString defaultPath();
    const QString& path() const { return m_path; }

    // What the catalogue depends on besides the desktop entries themselves, as one line.
    static std::string environment();

    // The apps as the menus show them, and as their entries describe them, in the same order.
    struct Catalogue
    {
        std::vector<AppEntry> apps;
        std::vector<DesktopApp> entries;
    };

    // The catalogue saved under `environment`; nothing when the file is missing, damaged,
    // foreign or from another environment.
    std::optional<Catalogue> load(const std::string& environment) const;
    bool save(const std::string& environment, const Catalogue& catalogue) const;

private:
    QString m_path;
};

} // namespace pomvar::srv
