#include "TestDesktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

namespace pomvar::srvtest {

TestDesktop::TestDesktop()
{
    QDir().mkpath(home());
    QDir().mkpath(systemData());
}

bool TestDesktop::write(const QString& path, const QByteArray& content, bool executable)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) < 0)
        return false;
    file.close();
    if (executable)
        file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser);
    return true;
}

bool TestDesktop::writeEntry(const QString& dataDir,
                             const QString& relative,
                             const QByteArray& lines)
{
    return write(dataDir + QStringLiteral("/applications/") + relative,
                 "[Desktop Entry]\nType=Application\n" + lines);
}

bool TestDesktop::writePng(const QString& path, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(40, 120, 200));
    QDir().mkpath(QFileInfo(path).absolutePath());
    return image.save(path, "PNG");
}

QProcessEnvironment TestDesktop::environment(quint16 port) const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home());
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome());
    env.insert(QStringLiteral("XDG_CACHE_HOME"), cacheHome());
    env.insert(QStringLiteral("XDG_DATA_HOME"), dataHome());
    env.insert(QStringLiteral("XDG_DATA_DIRS"), systemData());
    env.insert(QStringLiteral("XDG_STATE_HOME"), home() + QStringLiteral("/.local/state"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    env.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("KDE"));
    env.insert(QStringLiteral("POMVARSRV_PORT"), QString::number(port));
    // No session bus: launching must not depend on one.
    env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    return env;
}

} // namespace pomvar::srvtest
