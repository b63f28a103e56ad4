#include "i18n/Translations.h"
#include "pomvarsrv/app/ServerApp.h"
#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/app/ServerOptions.h"
#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/ipc/LoopbackSockets.h"
#include "pomvarsrv/ipc/SearchShortcut.h"

#include <QApplication>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

using namespace pomvar::srv;

int main(int argc, char* argv[])
{
    installServerLog();
    const quint16 port = ServerOptions::port();
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--search")
            return SearchShortcut::run(port);
    // The port first, before Qt and the display: a second server leaves without touching
    // anything, and the front end's probe finds the port taken at its first look.
    std::vector<int> sockets;
    std::string notes;
    switch (LoopbackSockets::open(port, sockets, notes)) {
        case LoopbackSockets::Result::listening:
            break;
        case LoopbackSockets::Result::portTaken:
            std::fprintf(
                stderr,
                "pomvarsrv: port %u is already in use: a runtime server is running already\n",
                static_cast<unsigned>(port));
            return 0;
        case LoopbackSockets::Result::failed:
            std::fprintf(stderr,
                         "pomvarsrv: cannot listen on port %u\n%s",
                         static_cast<unsigned>(port),
                         notes.c_str());
            return 1;
    }
    AppCatalogue::addFlatpakDataDirs();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pomvarsrv"));
    // libexec/pomvar/pomvarsrv: two folders below the prefix.
    pomvar::Translations::install(
        pomvar::Translations::folderFor(QApplication::applicationDirPath(), 2));
    if (!notes.empty())
        qCInfo(lcApp).noquote() << QString::fromStdString(notes).trimmed();
    qCInfo(lcApp) << "listening on port" << port;

    ServerOptions options = ServerOptions::parse(QApplication::arguments());
    options.installDir = QApplication::applicationDirPath();
    ServerApp server(options);
    server.start(sockets);
    return QApplication::exec();
}
