// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "pomvarsrv/catalogue/AppCatalogue.h"

#include "pomvarsrv/catalogue/DesktopEntries.h"

#include "pomvarsrv/search/NameOrder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pomvar::srv {

namespace {

constexpr int kDebounceMs = 500;

void monitorChanged(GAppInfoMonitor*, gpointer catalogue)
{
    QMetaObject::invokeMethod(static_cast<QObject*>(catalogue), "onMonitorChanged");
}

QString iconKey(GDesktopAppInfo* info)
{
    gchar* icon = g_desktop_app_info_get_string(info, "Icon");
    QString key = QString::fromUtf8(icon ? icon : "").trimmed();
    g_free(icon);
    return key;
}

QString text(gchar* owned)
{
    QString value = QString::fromUtf8(owned ? owned : "");
    g_free(owned);
    return value;
}

DesktopApp describe(GDesktopAppInfo* info, const std::string& id, const char* name)
{
    DesktopApp app;
    app.id = id;
    app.name = name;
    app.icon = iconKey(info);
    app.untranslatedName = text(g_desktop_app_info_get_string(info, "Name"));
    app.genericName = QString::fromUtf8(g_desktop_app_info_get_generic_name(info));
    if (const char* const* keywords = g_desktop_app_info_get_keywords(info))
        for (; *keywords; ++keywords)
            app.keywords.append(QString::fromUtf8(*keywords));
    app.comment = QString::fromUtf8(g_app_info_get_description(G_APP_INFO(info)));
    const QString program = QString::fromUtf8(g_app_info_get_executable(G_APP_INFO(info)));
    app.program = program.mid(program.lastIndexOf(u'/') + 1);
    return app;
}

} // namespace

AppCatalogue::AppCatalogue(QObject* parent)
    : QObject(parent)
{
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(kDebounceMs);
    connect(&m_debounce, &QTimer::timeout, this, &AppCatalogue::changed);
}

AppCatalogue::~AppCatalogue()
{
    if (m_monitor) {
        g_signal_handler_disconnect(m_monitor, m_handlerId);
        g_object_unref(m_monitor);
    }
}

QString AppCatalogue::glibVersion()
{
    return QStringLiteral("%1.%2.%3")
        .arg(glib_major_version)
        .arg(glib_minor_version)
        .arg(glib_micro_version);
}

void AppCatalogue::addFlatpakDataDirs()
{
    QString dirs = qEnvironmentVariable("XDG_DATA_DIRS");
    if (dirs.isEmpty())
        dirs = QStringLiteral("/usr/local/share:/usr/share");
    QStringList list = dirs.split(u':', Qt::SkipEmptyParts);
    const QStringList flatpak = {
        QDir::homePath() + QStringLiteral("/.local/share/flatpak/exports/share"),
        QStringLiteral("/var/lib/flatpak/exports/share"),
    };
    bool added = false;
    for (const auto& dir : flatpak) {
        if (QFileInfo(dir).isDir() && !list.contains(dir) && !list.contains(dir + u'/')) {
            list.append(dir);
            added = true;
        }
    }
    if (added)
        qputenv("XDG_DATA_DIRS", list.join(u':').toLocal8Bit());
}

void AppCatalogue::watch()
{
    if (m_monitor)
        return;
    // The user's own entries (an edited copy among them) are seen at once only when their
    // folder is there before GIO first lists it: a missing folder is only looked for now and
    // then.
    QDir().mkpath(QFile::decodeName(g_get_user_data_dir()) + QStringLiteral("/applications"));
    m_monitor = g_app_info_monitor_get();
    m_handlerId = g_signal_connect(m_monitor, "changed", G_CALLBACK(monitorChanged), this);
}

void AppCatalogue::forEachApp(const std::function<void(DesktopApp)>& visit)
{
    DesktopEntries::forEach([&visit](const std::string& id, GDesktopAppInfo* entry) {
        if (!g_app_info_should_show(G_APP_INFO(entry)))
            return;
        if (const char* name = g_app_info_get_name(G_APP_INFO(entry)))
            visit(describe(entry, id, name));
    });
}

std::vector<DesktopApp> AppCatalogue::listApps(std::size_t expected)
{
    // By id first, so that apps of the same name always come in the same order.
    std::vector<DesktopApp> apps;
    apps.reserve(expected);
    forEachApp([&apps](DesktopApp app) { apps.push_back(std::move(app)); });
    std::vector<std::size_t> order;
    {
        std::vector<QString> names;
        names.reserve(apps.size());
        for (const auto& app : apps)
            names.push_back(QString::fromStdString(app.name));
        order = NameOrder().sorted(names);
    }
    // In place, one cycle of the permutation at a time: a second list of thousands of apps
    // would be the largest allocation of a scan.
    std::vector<bool> placed(apps.size());
    for (std::size_t start = 0; start < apps.size(); ++start) {
        if (placed[start])
            continue;
        DesktopApp first = std::move(apps[start]);
        std::size_t at = start;
        for (std::size_t from = order[at]; from != start; at = from, from = order[at]) {
            apps[at] = std::move(apps[from]);
            placed[at] = true;
        }
        apps[at] = std::move(first);
        placed[at] = true;
    }
    return apps;
}

void AppCatalogue::onMonitorChanged()
{
    m_debounce.start();
}

} // namespace pomvar::srv
