#include "pomvarsrv/catalogue/CatalogueScan.h"

#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/catalogue/CatalogueDigest.h"
#include "pomvarsrv/catalogue/IconTheme.h"

#include <QDir>
#include <QElapsedTimer>

#include <malloc.h>

#include <future>

namespace pomvar::srv {

namespace {

QString iconName(const QString& icon)
{
    for (const auto* extension : { ".png", ".svg", ".xpm" }) {
        if (icon.endsWith(QLatin1String(extension)))
            return icon.left(icon.size() - 4);
    }
    return icon;
}

std::string bundleId(const std::string& desktopId)
{
    constexpr std::string_view suffix = ".desktop";
    if (desktopId.size() > suffix.size() && desktopId.ends_with(suffix))
        return desktopId.substr(0, desktopId.size() - suffix.size());
    return desktopId;
}

IconTheme userTheme(const QString& themeName)
{
    return IconTheme(themeName, IconTheme::defaultIconDirs(), IconTheme::defaultPixmapDirs());
}

// The menus' app for an entry, with the renders of its icon; a missing render is noted in the
// scan, its generic icon standing in.
AppEntry menuEntry(const DesktopApp& app,
                   const IconTheme& theme,
                   const IconCache& icons,
                   CatalogueScan& scan)
{
    const QString source = QDir::isAbsolutePath(app.icon)
                               ? app.icon
                               : theme.find(iconName(app.icon), IconCache::kSize2x);
    IconCache::Files files = source.isEmpty() ? scan.generic : icons.cached(source);
    if (!files.isValid()) {
        scan.missing.emplace_back(app.id, source);
        files = scan.generic;
    }
    return AppEntry{
        app.id, app.name, bundleId(app.id), files.path.toStdString(), files.path2x.toStdString()
    };
}

IconCache::Files genericIcon(const IconTheme& theme, const IconCache& icons)
{
    return icons.generic(
        theme.find(QStringLiteral("application-x-executable"), IconCache::kSize2x));
}

// The menus' apps for the scan's entries.
void addMenuEntries(CatalogueScan& scan, const IconTheme& theme, const IconCache& icons)
{
    scan.generic = genericIcon(theme, icons);
    scan.apps.reserve(scan.entries.size());
    for (const auto& app : scan.entries)
        scan.apps.push_back(menuEntry(app, theme, icons, scan));
}

QString summaryOf(std::size_t apps,
                  qint64 listedMs,
                  qint64 waitedMs,
                  const CatalogueScan& scan,
                  const IconTheme& theme)
{
    return QStringLiteral("%1 apps listed in %2 ms (then waited %3 ms for the icon themes); %4 "
                          "icons to render; themes %5")
        .arg(apps)
        .arg(listedMs)
        .arg(waitedMs)
        .arg(scan.missing.size())
        .arg(theme.themeNames().join(QStringLiteral(", ")));
}

} // namespace

CatalogueScan CatalogueScan::run(const QString& themeName, const IconCache& icons)
{
    QElapsedTimer clock;
    clock.start();
    auto indexing = std::async(std::launch::async, [themeName] { return userTheme(themeName); });
    CatalogueScan scan;
    scan.entries = AppCatalogue::listApps();
    const qint64 listedMs = clock.elapsed();
    const IconTheme theme = indexing.get();
    const qint64 waitedMs = clock.elapsed() - listedMs;

    addMenuEntries(scan, theme, icons);
    scan.summary =
        summaryOf(scan.entries.size(), clock.elapsed() - waitedMs, waitedMs, scan, theme);
    return scan;
}

CatalogueScan CatalogueScan::runUnlessSame(const QString& themeName,
                                           const IconCache& icons,
                                           const QByteArray& inUse)
{
    QElapsedTimer clock;
    clock.start();
    CatalogueScan scan;
    const IconTheme theme = userTheme(themeName);
    scan.generic = genericIcon(theme, icons);
    CatalogueDigest digest;
    std::size_t count = 0;
    AppCatalogue::forEachApp([&](const DesktopApp& app) {
        digest.add(menuEntry(app, theme, icons, scan), app);
        ++count;
    });
    if (digest.result() == inUse) {
        scan.unchanged = true;
        scan.summary =
            summaryOf(count, clock.elapsed(), 0, scan, theme) + QStringLiteral("; unchanged");
        return scan;
    }
    // The first pass's look-ups are gone: their pages go back before the list is made.
    ::malloc_trim(0);
    CatalogueScan listed;
    listed.entries = AppCatalogue::listApps(count);
    addMenuEntries(listed, theme, icons);
    listed.summary = summaryOf(listed.entries.size(), clock.elapsed(), 0, listed, theme);
    return listed;
}

} // namespace pomvar::srv
