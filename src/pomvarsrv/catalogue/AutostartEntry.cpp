// GLib before Qt: its headers use names that Qt's keywords would break.
#include "wire/UserPaths.h"

#include <glib.h>

#include "pomvarsrv/catalogue/AutostartEntry.h"

#include "pomvarsrv/model/AtomicFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace pomvar::srv {

namespace {

// An Exec argument quoted as desktop entries require: within double quotes, with the
// characters the shell would read escaped.
QString quoted(const QString& program)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    if (std::none_of(program.begin(), program.end(), [](QChar c) { return reserved.contains(c); }))
        return program;
    QString escaped = program;
    for (const QChar c : { u'\\', u'"', u'`', u'$' })
        escaped.replace(c, QStringLiteral("\\") + c);
    // In a key file, a backslash is itself escaped.
    QString value = QStringLiteral("\"") + escaped + QStringLiteral("\"");
    return value.replace(u'\\', QStringLiteral("\\\\"));
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
    GKeyFile* file = g_key_file_new();
    const QByteArray path = QFile::encodeName(m_path);
    bool enabled = g_key_file_load_from_file(file, path.constData(), G_KEY_FILE_NONE, nullptr);
    const char* group = G_KEY_FILE_DESKTOP_GROUP;
    if (enabled && g_key_file_get_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr))
        enabled = false;
    GError* missing = nullptr;
    const bool gnome = g_key_file_get_boolean(file, group, "X-GNOME-Autostart-enabled", &missing);
    if (enabled && !missing && !gnome)
        enabled = false;
    g_clear_error(&missing);
    g_key_file_free(file);
    return enabled;
}

bool AutostartEntry::setEnabled(bool enabled, const QString& program) const
{
    if (!enabled)
        return !QFileInfo::exists(m_path) || QFile::remove(m_path);
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Pomvar\n"
                                        "Comment=The application launcher in the system tray\n"
                                        "Exec=%1\n"
                                        "Terminal=false\n"
                                        "X-GNOME-Autostart-enabled=true\n")
                             .arg(quoted(program));
    return AtomicFile::write(m_path, text.toUtf8());
}

} // namespace pomvar::srv
