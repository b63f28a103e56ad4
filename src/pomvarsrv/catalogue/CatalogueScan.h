#pragma once

#include "pomvarsrv/catalogue/IconCache.h"
#include "pomvarsrv/model/AppEntry.h"
#include "pomvarsrv/model/DesktopApp.h"
#include "pomvarsrv/search/SearchIndex.h"

#include <QString>

#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

// One listing of the installed apps with the icon renders they have, safe to run on any thread:
// GIO lists the desktop entries while another thread indexes the icon themes.
struct CatalogueScan
{
    using MissingIcon = std::pair<std::string, QString>; // app key, source file to render

    std::vector<AppEntry> apps;      // in menu order; the generic icon where a render is missing
    std::vector<DesktopApp> entries; // the same apps as their desktop entries describe them
    SearchIndex index;               // over `entries`, prepared on the scanning thread
    std::vector<MissingIcon> missing;
    IconCache::Files generic;
    QString summary; // for the log

    // `themeName`: the user's icon theme, read on the main thread (IconTheme::userThemeName).
    static CatalogueScan run(const QString& themeName, const IconCache& icons);
};

} // namespace pomvar::srv
