// pomvar-fakesrv: the fake runtime server as a program, to stand in for pomvarsrv in the
// install layout. Controlled through the environment:
//   POMVAR_FAKE_DIR       folder for argv.json (its arguments) and requests.jsonl (one JSON
//                         string per request, exact text)
//   POMVAR_FAKE_LIFETIME  seconds before it gives up on its own (default 120)
//   POMVAR_FAKE_LISTEN_DELAY_MS  how long it waits before it listens (default 0)
// It exits on "quit".
#include "FakeRuntimeServer.h"
#include "wire/RuntimeEndpoint.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <fstream>
#include <iostream>

using pomvar::test::FakeRuntimeServer;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const std::string dir = qEnvironmentVariable("POMVAR_FAKE_DIR", ".").toStdString();

    const std::vector<std::string> args(argv + 1, argv + argc);
    std::ofstream(dir + "/argv.json") << nlohmann::json(args).dump() << '\n';

    FakeRuntimeServer server(pomvar::wire::kRuntimePort);
    std::ofstream log(dir + "/requests.jsonl", std::ios::app);
    server.setRequestObserver([&](const std::string& body) {
        log << nlohmann::json(body).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
            << std::endl;
        if (FakeRuntimeServer::requestId(body) == "quit")
            QMetaObject::invokeMethod(&app, &QCoreApplication::quit);
    });

    QThread::msleep(qEnvironmentVariableIntValue("POMVAR_FAKE_LISTEN_DELAY_MS"));
    if (!server.listen()) {
        std::cerr << "pomvar-fakesrv: the runtime port is already in use\n";
        return 0;
    }
    const int lifetime = qEnvironmentVariable("POMVAR_FAKE_LIFETIME", "120").toInt();
    QTimer::singleShot(lifetime * 1000, &app, &QCoreApplication::quit);
    return app.exec();
}
