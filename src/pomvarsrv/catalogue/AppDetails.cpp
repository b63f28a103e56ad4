// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "pomvarsrv/catalogue/AppDetails.h"

#include "pomvarsrv/catalogue/DesktopEntries.h"

namespace pomvar::srv {

namespace {

QString utf8(const char* text)
{
    return QString::fromUtf8(text ? text : "");
}

QStringList categoriesOf(GDesktopAppInfo* info)
{
    return utf8(g_desktop_app_info_get_categories(info)).split(u';', Qt::SkipEmptyParts);
}

// The command as it runs with nothing to open: the field codes are left out, "%%" is "%".
QString withoutFieldCodes(const QString& exec)
{
    static const QString codes = QStringLiteral("fFuUdDnNickvm");
    QString command;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        if (exec[i] != u'%' || i + 1 == exec.size()) {
            command += exec[i];
        } else if (exec[++i] == u'%') {
            command += u'%';
        } else if (!codes.contains(exec[i])) {
            command += u'%';
            command += exec[i];
        } else if (command.endsWith(u' ')) {
            command.chop(1); // with the space before it
        }
    }
    return command.trimmed();
}

} // namespace

std::optional<AppDetails> AppDetails::read(const QString& desktopId)
{
    GDesktopAppInfo* info = g_desktop_app_info_new(desktopId.toUtf8().constData());
    if (!info)
        return std::nullopt;
    GAppInfo* app = G_APP_INFO(info);
    AppDetails details;
    details.id = desktopId;
    details.name = utf8(g_app_info_get_name(app));
    details.genericName = utf8(g_desktop_app_info_get_generic_name(info));
    details.comment = utf8(g_app_info_get_description(app));
    details.path = utf8(g_desktop_app_info_get_filename(info));
    details.commandLine = withoutFieldCodes(utf8(g_app_info_get_commandline(app)));
    details.categories = categoriesOf(info);
    details.terminal = g_desktop_app_info_get_boolean(info, "Terminal");
    g_object_unref(info);
    return details;
}

std::map<std::string, QStringList> AppDetails::categoriesOfAll()
{
    std::map<std::string, QStringList> found;
    DesktopEntries::forEach([&found](const std::string& id, GDesktopAppInfo* entry) {
        found.emplace(id, categoriesOf(entry));
    });
    return found;
}

} // namespace pomvar::srv
