#pragma once

#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace pomvar::test {

// A throw-away desktop: HOME, the XDG folders and a "system" data folder standing in for
// /usr/share, all inside one temporary folder, so that nothing touches the real user's files.
class TestDesktop
{
public:
    QString root() const { return m_root.path(); }
    QString home() const { return root() + QStringLiteral("/home"); }
    QString configHome() const { return home() + QStringLiteral("/.config"); }
    QString cacheHome() const { return home() + QStringLiteral("/.cache"); }
    QString dataHome() const { return home() + QStringLiteral("/.local/share"); }
    QString systemData() const { return root() + QStringLiteral("/system"); }
    QString storePath() const { return configHome() + QStringLiteral("/pomvar/pomvarsrv.json"); }
    QString iconCache() const { return cacheHome() + QStringLiteral("/pomvar/icons"); }

    // Writes a file, its folders created; `path` is absolute.
    static bool write(const QString& path, const QByteArray& content, bool executable = false);
    // The whole file; empty when it cannot be read.
    static QByteArray read(const QString& path);
    // Writes "[Desktop Entry]" plus `lines` as <dataDir>/applications/<relative>.
    static bool writeEntry(const QString& dataDir,
                           const QString& relative,
                           const QByteArray& lines);

    // The environment of a server living in this desktop; <root>/fake-bin comes first on PATH.
    QProcessEnvironment environment(quint16 port) const;

private:
    QTemporaryDir m_root;
};

} // namespace pomvar::test
