// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "AppCatalogue.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

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

std::vector<DesktopApp> AppCatalogue::list()
{
    if (!m_monitor) {
        m_monitor = g_app_info_monitor_get();
        m_handlerId = g_signal_connect(m_monitor, "changed", G_CALLBACK(monitorChanged), this);
    }
    struct Sortable
    {
        DesktopApp app;
        QByteArray sortKey;
    };
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::vector<Sortable> apps;
    GList* all = g_app_info_get_all();
    for (GList* item = all; item; item = item->next) {
        GAppInfo* info = G_APP_INFO(item->data);
        if (!G_IS_DESKTOP_APP_INFO(info) || !g_app_info_should_show(info))
            continue;
        const char* id = g_app_info_get_id(info);
        const char* name = g_app_info_get_name(info);
        if (!id || !name)
            continue;
        DesktopApp app{ id, name, iconKey(G_DESKTOP_APP_INFO(info)) };
        apps.push_back({ std::move(app), QByteArray(name) });
    }
    g_list_free_full(all, g_object_unref);

    std::vector<QCollatorSortKey> keys;
    keys.reserve(apps.size());
    for (const auto& entry : apps)
        keys.push_back(collator.sortKey(QString::fromUtf8(entry.sortKey)));
    std::vector<std::size_t> order(apps.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const int byName = keys[a].compare(keys[b]);
        return byName != 0 ? byName < 0 : apps[a].app.id < apps[b].app.id;
    });
    std::vector<DesktopApp> sorted;
    sorted.reserve(apps.size());
    for (const std::size_t i : order)
        sorted.push_back(std::move(apps[i].app));
    return sorted;
}

void AppCatalogue::onMonitorChanged()
{
    m_debounce.start();
}

} // namespace pomvar::srv
