#pragma once

#include "ChildProcess.h"

#include <QByteArray>
#include <QJsonArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace pomvar::test {

// A copy of the install layout in a temporary folder: bin/pomvar (the real program, copied
// so that it finds its server beside it) and libexec/pomvar/pomvarsrv (the fake runtime
// server), with a home folder of its own. Fake servers started from it are killed when it
// goes away.
class InstallLayout
{
public:
    InstallLayout();
    ~InstallLayout();
    InstallLayout(const InstallLayout&) = delete;
    InstallLayout& operator=(const InstallLayout&) = delete;

    bool isValid() const { return m_ready; }

    // Runs pomvar to its end (killed when it does not end in time).
    ChildOutcome run(const QStringList& arguments);
    // The same with a terminal (a pseudo-terminal from script(1)) as standard output.
    ChildOutcome runInTerminal(const QStringList& arguments);

    // Starts pomvar and leaves it running.
    std::unique_ptr<QProcess> start(const QStringList& arguments);
    // Waits until `process` has a connection to the runtime server's port.
    static bool isConnectedToServer(const QProcess& process);

    QString pidFilePath() const;
    QString fakeDir() const;
    QString fakeServerPath() const;
    // What the fake server was started with, or nothing when it was not started.
    std::optional<QJsonArray> fakeArguments() const;
    void writeFakeScript(const QByteArray& json) const;
    // Puts a program `name` with the shell script `body` first on pomvar's PATH.
    bool addToolOnPath(const QString& name, const QByteArray& body);
    // Kills the fake servers started from this layout; returns how many there were.
    int killFakeServers() const;

private:
    QProcessEnvironment environment() const;

    QTemporaryDir m_dir;
    bool m_ready = false;
    bool m_toolsOnPath = false;
};

} // namespace pomvar::test
