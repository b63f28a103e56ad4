#pragma once

#include "AppEntry.h"

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
// Layout: "pomvar-catalogue 1\n", the environment line, the hex SHA-1 of what follows and "\n",
// then the five fields of each app (key, name, bundle id, icon paths), each ended by a NUL.
// GIO hands out C strings, so no field holds a NUL.
class CatalogueCache
{
public:
    explicit CatalogueCache(QString path = defaultPath());
    static QString defaultPath();
    const QString& path() const { return m_path; }

    // What the catalogue depends on besides the desktop entries themselves, as one line.
    static std::string environment();

    // The apps saved under `environment`; nothing when the file is missing, damaged, foreign or
    // from another environment.
    std::optional<std::vector<AppEntry>> load(const std::string& environment) const;
    bool save(const std::string& environment, const std::vector<AppEntry>& apps) const;

private:
    QString m_path;
};

} // namespace pomvar::srv
