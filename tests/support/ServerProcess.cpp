#include "ServerProcess.h"

#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/RuntimeEndpoint.h"

#include <QTcpServer>
#include <QTest>

namespace pomvar::test {

static int logCounter = 0;

quint16 ServerProcess::freePort()
{
    // Free on both loopback addresses, then released for the server to take.
    for (int attempt = 0; attempt < 20; ++attempt) {
        QTcpServer ip4, ip6;
        if (ip4.listen(QHostAddress::LocalHost) && ip4.serverPort() != wire::kRuntimePort &&
            ip6.listen(QHostAddress::LocalHostIPv6, ip4.serverPort()))
            return ip4.serverPort();
    }
    return 0;
}

ServerProcess::ServerProcess(const TestDesktop& desktop,
                             QProcessEnvironment extra,
                             QStringList wrapper)
    : m_desktop(desktop)
    , m_extra(std::move(extra))
    , m_wrapper(std::move(wrapper))
    , m_logPath(desktop.root() + QStringLiteral("/pomvarsrv-%1.log").arg(++logCounter))
{}

void ServerProcess::launch(quint16 port, const QStringList& arguments)
{
    m_port = port;
    QProcessEnvironment environment = m_desktop.environment(port);
    environment.insert(m_extra);
    m_process.setProcessEnvironment(environment);
    m_process.setStandardErrorFile(m_logPath, QIODevice::Append);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    QStringList command = m_wrapper;
    command << qEnvironmentVariable("POMVAR_LIBEXEC_DIR") + QStringLiteral("/pomvarsrv")
            << arguments;
    m_process.start(command.takeFirst(), command);
}

bool ServerProcess::start(const QStringList& arguments)
{
    // A port found free can be taken by someone else before the server binds it: the server
    // then leaves at once, and another port is tried.
    for (int attempt = 0; attempt < 3; ++attempt) {
        launch(freePort(), arguments);
        // Requests are served once the catalogue is in, which the log tells.
        const auto loaded = [this] { return log().contains(QStringLiteral("apps loaded in")); };
        if (m_process.waitForStarted(10000) &&
            QTest::qWaitFor([&] { return !isRunning() || loaded(); }, 60000) && isRunning())
            return true;
        m_process.waitForFinished(10000);
        if (!log().contains(QStringLiteral("port %1 is already in use").arg(m_port)))
            return false;
    }
    return false;
}

int ServerProcess::exitCode()
{
    const bool ended = m_process.waitForFinished(60000);
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int ServerProcess::quit()
{
    SrvClient client;
    // Plain JSON, which the server reads as well as the front end's own layout.
    return client.connectTo(m_port) && client.send(R"({"id": "quit"})") ? exitCode() : -1;
}

void ServerProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(10000);
}

} // namespace pomvar::test
