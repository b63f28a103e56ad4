#include "InProcessServer.h"

#include "ServerProcess.h"
#include "SrvClient.h"
#include "i18n/Translations.h"
#include "pomvarsrv/ipc/LoopbackSockets.h"

#include <QTest>

#include <chrono>
#include <future>

namespace pomvar::test {

void InProcessServer::useDesktop(const TestDesktop& desktop)
{
    const QProcessEnvironment env = desktop.environment(0);
    for (const char* name : { "HOME",
                              "XDG_CONFIG_HOME",
                              "XDG_CACHE_HOME",
                              "XDG_DATA_HOME",
                              "XDG_DATA_DIRS",
                              "XDG_STATE_HOME",
                              "PATH" })
        qputenv(name, env.value(QString::fromLatin1(name)).toUtf8());
}

bool InProcessServer::start(const srv::ServerOptions& options)
{
    m_port = ServerProcess::freePort();
    std::vector<int> sockets;
    std::string notes;
    if (srv::LoopbackSockets::open(m_port, sockets, notes) !=
        srv::LoopbackSockets::Result::listening)
        return false;
    // As the program does, in the test's language: the plural forms need them in English too.
    [[maybe_unused]] static const QString language =
        Translations::install(QStringLiteral(POMVAR_TRANSLATIONS_DIR));
    srv::ServerOptions withCalculator = options;
    if (withCalculator.calculatorModule.isEmpty())
        withCalculator.calculatorModule = QStringLiteral(POMVAR_CALCULATOR_MODULE);
    m_app = std::make_unique<srv::ServerApp>(withCalculator);
    m_app->start(sockets);
    return true;
}

bool InProcessServer::send(std::string_view body) const
{
    auto& client = m_senders.emplace_back(std::make_unique<SrvClient>());
    return client->connectTo(m_port) && client->send(body);
}

nlohmann::json InProcessServer::ask(std::string_view body) const
{
    auto reply = std::async(std::launch::async, [port = m_port, body = std::string(body)] {
        SrvClient client;
        return client.connectTo(port) ? client.json(body) : nlohmann::json();
    });
    const bool answered = QTest::qWaitFor(
        [&] { return reply.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
        20000);
    return answered ? reply.get() : nlohmann::json();
}

QWidget* InProcessServer::waitForWindow(const QString& objectName)
{
    QWidget* found = nullptr;
    const bool shown = QTest::qWaitFor([&] {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == objectName && window->isVisible())
                found = window;
        return found != nullptr;
    });
    return shown ? found : nullptr;
}

} // namespace pomvar::test
