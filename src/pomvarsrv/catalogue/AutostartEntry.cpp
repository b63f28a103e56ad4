// GLib before Qt: its headers use names that Qt's keywords would break.
#include "wire/UserPaths.h"

#include <glib.h>

#include "pomvarsrv/catalogue/AutostartEntry.h"

#include "pomvarsrv/catalogue/FrontEndProgram.h"
#include "pomvarsrv/model/AtomicFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace pomvar::srv {

namespace {

// An Exec argument quoted as desktop entries require: within double quotes, with the
// characters the shell would read escaped. The key file's own escapes are GKeyFile's.
QByteArray quoted(const QString& program)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    if (std::none_of(program.begin(), program.end(), [](QChar c) { return reserved.contains(c); }))
        return program.toUtf8();
    QString escaped = program;
    for (const QChar c : { u'\\', u'"', u'`', u'$' })
        escaped.replace(c, QStringLiteral("\\") + c);
    return (QStringLiteral("\"") + escaped + QStringLiteral("\"")).toUtf8();
}

} // namespace

AutostartEntry::AutostartEntry(QString path)
    : m_path(std::move(path))
{}

QString AutostartEntry::defaultPath()
{
    return QString::fromStdString(paths::autostartEntry());
}

QString AutostartEntry::installedFrontEnd()
{
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../../bin"))
        .absoluteFilePath(QStringLiteral("pomvar"));
}

bool AutostartEntry::isEnabled() const
{
    g_autoptr(GKeyFile) file = g_key_file_new();
    const QByteArray path = QFile::encodeName(m_path);
    if (!g_key_file_load_from_file(file, path.constData(), G_KEY_FILE_NONE, nullptr))
        return false;
    const char* group = G_KEY_FILE_DESKTOP_GROUP;
    if (g_key_file_get_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr))
        return false;
    g_autoptr(GError) missing = nullptr;
    const bool gnome = g_key_file_get_boolean(file, group, "X-GNOME-Autostart-enabled", &missing);
    return missing || gnome;
}

bool AutostartEntry::setEnabled(bool enabled, const QString& program, QString* why) const
{
    if (!enabled)
        return !QFileInfo::exists(m_path) || QFile::remove(m_path);
    if (const QString problem = FrontEndProgram::problem(program); !problem.isEmpty()) {
        if (why)
            *why = problem;
        return false;
    }
    g_autoptr(GKeyFile) file = g_key_file_new();
    const char* group = G_KEY_FILE_DESKTOP_GROUP;
    g_key_file_set_string(
        file, group, G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
    g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_NAME, "Pomvar");
    g_key_file_set_string(
        file, group, G_KEY_FILE_DESKTOP_KEY_COMMENT, "The application launcher in the system tray");
    g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_EXEC, quoted(program).constData());
    g_key_file_set_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_TERMINAL, false);
    g_key_file_set_boolean(file, group, "X-GNOME-Autostart-enabled", true);
    gsize size = 0;
    g_autofree gchar* text = g_key_file_to_data(file, &size, nullptr);
    return AtomicFile::write(m_path, QByteArrayView(text, qsizetype(size)));
}

} // namespace pomvar::srv
