#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace pomvar::srvtest {

class TestDesktop;

// The real pomvarsrv as a child process, on a free port of its own (never the fixed runtime
// port, which other tests on this machine use), its standard error kept in a file.
class ServerProcess
{
public:
    explicit ServerProcess(const TestDesktop& desktop);
    ~ServerProcess();

    // An environment variable for the server, beside the desktop's.
    void setEnvironmentValue(const QString& name, const QString& value);
    // Starts the server and waits until it listens and has loaded the catalogue.
    bool start(const QStringList& arguments = {});
    // Starts it on a given port and waits for it to end (for servers that must not start).
    int runToExit(std::uint16_t port, const QStringList& arguments = {});

    std::uint16_t port() const { return m_port; }
    qint64 pid() const { return m_process.processId(); }
    QString log() const;
    QProcess& process() { return m_process; }

    // Sends "quit" and waits: the exit code, or -1 when it did not end normally.
    int quit();
    void kill();

    static std::uint16_t freePort();
    static QString executable();

private:
    const TestDesktop& m_desktop;
    QProcess m_process;
    QString m_logPath;
    std::uint16_t m_port = 0;
    QProcessEnvironment m_extra;
};

} // namespace pomvar::srvtest
