#pragma once

#include "TestDesktop.h"

#include <QProcess>

namespace pomvar::test {

// The real pomvarsrv as a child process on a free port of its own (never the fixed runtime port,
// which other tests on this machine use), its standard error kept in a file.
class ServerProcess
{
public:
    // `extra` is added to the desktop's environment; `wrapper` runs the server (as "setpriv
    // ... --" does).
    explicit ServerProcess(const TestDesktop& desktop,
                           QProcessEnvironment extra = {},
                           QStringList wrapper = {});
    ~ServerProcess() { kill(); }

    // Starts the server and waits until it listens and has loaded the catalogue.
    bool start(const QStringList& arguments = {});
    // Runs it on a given port to its end (for servers that must not start): the exit code.
    int runToExit(quint16 port, const QStringList& arguments = {})
    {
        launch(port, arguments);
        return exitCode();
    }
    quint16 port() const { return m_port; }
    qint64 pid() const { return m_process.processId(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    QString log() const { return QString::fromUtf8(TestDesktop::read(m_logPath)); }
    // Sends "quit" and waits: the exit code, or -1 when it did not end normally.
    int quit();
    void kill();

    static quint16 freePort();

private:
    void launch(quint16 port, const QStringList& arguments);
    int exitCode();

    const TestDesktop& m_desktop;
    QProcessEnvironment m_extra;
    QStringList m_wrapper;
    QProcess m_process;
    QString m_logPath;
    quint16 m_port = 0;
};

} // namespace pomvar::test
