#include "AppCatalogue.h"
#include "ServerApp.h"
#include "ServerLog.h"
#include "ServerOptions.h"

#include <QApplication>

#include <cstdio>

using namespace pomvar::srv;

int main(int argc, char* argv[])
{
    installServerLog();
    AppCatalogue::addFlatpakDataDirs();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pomvarsrv"));

    ServerApp server(ServerOptions::parse(QApplication::arguments()));
    const quint16 port = ServerOptions::port();
    switch (server.start(port)) {
        case RuntimeServer::ListenResult::listening:
            break;
        case RuntimeServer::ListenResult::portTaken:
            std::fprintf(
                stderr,
                "pomvarsrv: port %u is already in use: a runtime server is running already\n",
                static_cast<unsigned>(port));
            return 0;
        case RuntimeServer::ListenResult::failed:
            std::fprintf(
                stderr, "pomvarsrv: cannot listen on port %u\n", static_cast<unsigned>(port));
            return 1;
    }
    return QApplication::exec();
}
