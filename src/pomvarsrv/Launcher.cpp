// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "Launcher.h"

#include "ServerLog.h"

namespace pomvar::srv {

bool Launcher::launch(const QString& desktopId, QString* error)
{
    GDesktopAppInfo* info = g_desktop_app_info_new(desktopId.toUtf8().constData());
    if (!info) {
        *error = QStringLiteral("no desktop entry named %1").arg(desktopId);
        return false;
    }
    GAppLaunchContext* context = g_app_launch_context_new();
    // The server's own test and platform settings are not the app's business.
    g_app_launch_context_unsetenv(context, "POMVARSRV_PORT");
    GError* failure = nullptr;
    const bool started = g_app_info_launch(G_APP_INFO(info), nullptr, context, &failure);
    if (!started) {
        *error = QString::fromUtf8(failure ? failure->message : "unknown error");
        g_clear_error(&failure);
    }
    g_object_unref(context);
    g_object_unref(info);
    return started;
}

} // namespace pomvar::srv
