#include "TestDesktop.h"

#include <QDir>

namespace pomvar::test {

bool TestDesktop::write(const QString& path, const QByteArray& content, bool executable)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) < 0)
        return false;
    return !executable || file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
}

QByteArray TestDesktop::read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TestDesktop::writeEntry(const QString& dataDir,
                             const QString& relative,
                             const QByteArray& lines)
{
    return write(dataDir + QStringLiteral("/applications/") + relative,
                 "[Desktop Entry]\nType=Application\n" + lines);
}

QProcessEnvironment TestDesktop::environment(quint16 port) const
{
    QDir().mkpath(home());
    QDir().mkpath(systemData());
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", home());
    env.insert("XDG_CONFIG_HOME", configHome());
    env.insert("XDG_CACHE_HOME", cacheHome());
    env.insert("XDG_DATA_HOME", dataHome());
    env.insert("XDG_DATA_DIRS", systemData());
    env.insert("XDG_STATE_HOME", home() + "/.local/state");
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("GSETTINGS_BACKEND", "memory");
    env.insert("XDG_CURRENT_DESKTOP", "KDE");
    env.insert("POMVARSRV_PORT", QString::number(port));
    env.insert("PATH", root() + "/fake-bin:" + env.value("PATH"));
    // No session bus: launching must not depend on one.
    env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    return env;
}

} // namespace pomvar::test
