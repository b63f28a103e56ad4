#include "ServerProcess.h"

#include "SrvClient.h"
#include "TestDesktop.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pomvar::srvtest {

namespace {

int logCounter = 0;

} // namespace

ServerProcess::ServerProcess(const TestDesktop& desktop)
    : m_desktop(desktop)
    , m_logPath(desktop.root() + QStringLiteral("/pomvarsrv-%1.log").arg(++logCounter))
{}

ServerProcess::~ServerProcess()
{
    kill();
}

QString ServerProcess::executable()
{
    return qEnvironmentVariable("POMVAR_LIBEXEC_DIR") + QStringLiteral("/pomvarsrv");
}

std::uint16_t ServerProcess::freePort()
{
    // Bound on both loopback addresses, then released for the server to take.
    for (int attempt = 0; attempt < 20; ++attempt) {
        const int fd4 = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ::bind(fd4, reinterpret_cast<sockaddr*>(&address), sizeof address);
        ::getsockname(fd4, reinterpret_cast<sockaddr*>(&address), &size);
        const std::uint16_t port = ntohs(address.sin_port);
        const int fd6 = ::socket(AF_INET6, SOCK_STREAM, 0);
        sockaddr_in6 address6{};
        address6.sin6_family = AF_INET6;
        address6.sin6_addr = in6addr_loopback;
        address6.sin6_port = htons(port);
        const bool free6 =
            ::bind(fd6, reinterpret_cast<sockaddr*>(&address6), sizeof address6) == 0;
        ::close(fd6);
        ::close(fd4);
        if (free6 && port != 50818)
            return port;
    }
    return 0;
}

void ServerProcess::setEnvironmentValue(const QString& name, const QString& value)
{
    m_extra.insert(name, value);
}

bool ServerProcess::start(const QStringList& arguments)
{
    // A port found free can be taken by someone else before the server binds it: the server
    // then leaves at once, and another port is tried.
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_port = freePort();
        QProcessEnvironment env = m_desktop.environment(m_port);
        env.insert(m_extra);
        m_process.setProcessEnvironment(env);
        m_process.setStandardErrorFile(m_logPath, QIODevice::Append);
        m_process.setStandardOutputFile(m_logPath + QStringLiteral(".out"), QIODevice::Append);
        m_process.start(executable(), arguments);
        if (!m_process.waitForStarted(10000))
            return false;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 60000 && m_process.state() == QProcess::Running) {
            if (log().contains(QStringLiteral("listening on port %1").arg(m_port))) {
                // Requests are served once the catalogue is in: this reply says it is.
                SrvClient client;
                return client.connectTo(m_port) &&
                       client.request(SrvClient::plain("get-app-status")).has_value();
            }
            QThread::msleep(20);
        }
        m_process.waitForFinished(10000);
        if (!log().contains(QStringLiteral("port %1 is already in use").arg(m_port)))
            return false;
    }
    return false;
}

int ServerProcess::runToExit(std::uint16_t port, const QStringList& arguments)
{
    m_port = port;
    m_process.setProcessEnvironment(m_desktop.environment(port));
    m_process.setStandardErrorFile(m_logPath, QIODevice::Append);
    m_process.start(executable(), arguments);
    if (!m_process.waitForFinished(60000) || m_process.exitStatus() != QProcess::NormalExit)
        return -1;
    return m_process.exitCode();
}

QString ServerProcess::log() const
{
    QFile file(m_logPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

int ServerProcess::quit()
{
    SrvClient client;
    if (!client.connectTo(m_port) || !client.send(SrvClient::plain("quit")))
        return -1;
    if (!m_process.waitForFinished(30000) || m_process.exitStatus() != QProcess::NormalExit)
        return -1;
    return m_process.exitCode();
}

void ServerProcess::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
}

} // namespace pomvar::srvtest
