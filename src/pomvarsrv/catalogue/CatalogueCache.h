#pragma once

#include "pomvarsrv/model/AppEntry.h"
#include "pomvarsrv/model/DesktopApp.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace pomvar::srv {

// The last catalogue, with its icon renders, in $XDG_CACHE_HOME/pomvar/catalogue, so that a
// start can serve at once and check it afterwards. It is tied to what shaped it (the version,
// the XDG data folders, the desktop, the languages, the collation): under anything else it is
// not used. The file is written atomically and carries a SHA-1 of its records, so a damaged or
// foreign file is never trusted.
//
// A QDataStream (Qt 6.4's): the magic "pomvar-catalogue", the format version (quint32), the
// environment line and the SHA-1 (QByteArray each), then one record per app up to the end: the
// menu's fields (key, name, bundle id, icon paths; QByteArray each), then the search's (icon key,
// untranslated name, generic name; QString each; keywords, QStringList; comment, program).
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

    // One app as the file holds it.
    static QByteArray record(const AppEntry& app, const DesktopApp& entry);

    // The catalogue saved under `environment`; nothing when the file is missing, damaged,
    // foreign, of another format or from another environment.
    std::optional<Catalogue> load(const std::string& environment) const;
    bool save(const std::string& environment,
              const std::vector<AppEntry>& apps,
              const std::vector<DesktopApp>& entries) const;

private:
    QString m_path;
};

} // namespace pomvar::srv
