#pragma once

#include "pomvarsrv/catalogue/IconCache.h"
#include "pomvarsrv/model/AppEntry.h"
#include "pomvarsrv/model/DesktopApp.h"

#include <QString>

#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

// One listing of the installed apps with the icon renders they have, safe to run on any thread:
// the desktop entries are read one at a time while another thread indexes the icon themes.
struct CatalogueScan
{
    using MissingIcon = std::pair<std::string, QString>; // app key, source file to render

    std::vector<AppEntry> apps;      // in menu order; the generic icon where a render is missing
    std::vector<DesktopApp> entries; // the same apps as their desktop entries describe them
    // The same catalogue as the one in use (runUnlessSame): `apps` and `entries` stay empty.
    bool unchanged = false;
    std::vector<MissingIcon> missing;
    IconCache::Files generic;
    QString summary; // for the log

    // `themeName`: the user's icon theme, read on the main thread (IconTheme::userThemeName).
    static CatalogueScan run(const QString& themeName, const IconCache& icons);
    // The same, when the apps differ from the catalogue in use, of digest `inUse`
    // (CatalogueDigest); else an `unchanged` scan. The comparison reads every entry once more
    // but keeps none: a start's check of its cached catalogue mostly finds it right.
    static CatalogueScan runUnlessSame(const QString& themeName,
                                       const IconCache& icons,
                                       const QByteArray& inUse);
};

} // namespace pomvar::srv
