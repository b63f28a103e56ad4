// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "pomvarsrv/catalogue/Launcher.h"

#include "pomvarsrv/catalogue/CatalogueLog.h"

#include <QCoreApplication>

namespace pomvar::srv {

bool Launcher::launch(const QString& desktopId, const QString& action, QString* error)
{
    GDesktopAppInfo* info = g_desktop_app_info_new(desktopId.toUtf8().constData());
    if (!info) {
        *error = QCoreApplication::translate("pomvar::srv::Launcher", "no desktop entry named %1")
                     .arg(desktopId);
        return false;
    }
    GAppLaunchContext* context = g_app_launch_context_new();
    // The server's own test and platform settings are not the app's business.
    g_app_launch_context_unsetenv(context, "POMVARSRV_PORT");
    GError* failure = nullptr;
    bool started = true;
    if (action.isEmpty())
        started = g_app_info_launch(G_APP_INFO(info), nullptr, context, &failure);
    else
        g_desktop_app_info_launch_action(info, action.toUtf8().constData(), context);
    if (!started) {
        *error = QString::fromUtf8(failure ? failure->message : "unknown error");
        g_clear_error(&failure);
    }
    g_object_unref(context);
    g_object_unref(info);
    return started;
}

std::vector<std::pair<QString, QString>> Launcher::actions(const QString& desktopId)
{
    std::vector<std::pair<QString, QString>> found;
    GDesktopAppInfo* info = g_desktop_app_info_new(desktopId.toUtf8().constData());
    if (!info)
        return found;
    for (const gchar* const* action = g_desktop_app_info_list_actions(info); action && *action;
         ++action) {
        gchar* name = g_desktop_app_info_get_action_name(info, *action);
        found.emplace_back(QString::fromUtf8(*action), QString::fromUtf8(name ? name : *action));
        g_free(name);
    }
    g_object_unref(info);
    return found;
}

} // namespace pomvar::srv
