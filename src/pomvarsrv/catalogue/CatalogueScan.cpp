#include "pomvarsrv/catalogue/CatalogueScan.h"

#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/catalogue/IconTheme.h"

#include <QDir>
#include <QElapsedTimer>

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

} // namespace

CatalogueScan CatalogueScan::run(const QString& themeName, const IconCache& icons)
{
    QElapsedTimer clock;
    clock.start();
    auto indexing = std::async(std::launch::async, [themeName] {
        return IconTheme(themeName, IconTheme::defaultIconDirs(), IconTheme::defaultPixmapDirs());
    });
    CatalogueScan scan;
    scan.entries = AppCatalogue::listApps();
    const auto& listed = scan.entries;
    const qint64 listedMs = clock.elapsed();
    const IconTheme theme = indexing.get();
    const qint64 indexedMs = clock.elapsed();

    scan.generic =
        icons.generic(theme.find(QStringLiteral("application-x-executable"), IconCache::kSize2x));
    scan.apps.reserve(listed.size());
    for (const auto& app : listed) {
        const QString source = QDir::isAbsolutePath(app.icon)
                                   ? app.icon
                                   : theme.find(iconName(app.icon), IconCache::kSize2x);
        IconCache::Files files = source.isEmpty() ? scan.generic : icons.cached(source);
        if (!files.isValid()) {
            scan.missing.emplace_back(app.id, source);
            files = scan.generic;
        }
        scan.apps.push_back(AppEntry{ app.id,
                                      app.name,
                                      bundleId(app.id),
                                      files.path.toStdString(),
                                      files.path2x.toStdString() });
    }
    scan.index.setApps(scan.entries);
    scan.summary = QStringLiteral("%1 apps listed in %2 ms (then waited %3 ms for the icon "
                                  "themes); %4 icons to render; themes %5")
                       .arg(listed.size())
                       .arg(clock.elapsed() - (indexedMs - listedMs))
                       .arg(indexedMs - listedMs)
                       .arg(scan.missing.size())
                       .arg(theme.themeNames().join(QStringLiteral(", ")));
    return scan;
}

} // namespace pomvar::srv
