#include "i18n/Translations.h"
#include "pomvarsrv/app/ServerApp.h"
#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/app/ServerOptions.h"
#include "pomvarsrv/app/StartRefusal.h"
#include "pomvarsrv/catalogue/AppCatalogue.h"
#include "pomvarsrv/ipc/LoopbackSockets.h"
#include "pomvarsrv/ipc/PortHolder.h"
#include "pomvarsrv/ipc/SearchShortcut.h"
#include "pomvarsrv/search/CalculatorModule.h"

#include <QApplication>
#include <QIcon>

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using namespace pomvar::srv;

namespace {

// How long an ending Pomvar server of this user may hold the port (an update's restart).
constexpr auto kEndingServerWait = std::chrono::seconds(5);
constexpr auto kPortRetry = std::chrono::milliseconds(50);

// Opens the port; while an ending Pomvar server of this user still holds it, tries again, for a
// while. What holds it when it cannot be opened.
LoopbackSockets::Result openPort(quint16 port,
                                 std::vector<int>& sockets,
                                 std::string& notes,
                                 PortHolder& holder)
{
    const auto deadline = std::chrono::steady_clock::now() + kEndingServerWait;
    for (;;) {
        const LoopbackSockets::Result result = LoopbackSockets::open(port, sockets, notes);
        if (result != LoopbackSockets::Result::portTaken)
            return result;
        holder = PortHolder::of(port);
        if (holder.kind != PortHolder::Kind::ourServer ||
            std::chrono::steady_clock::now() >= deadline)
            return result;
        std::this_thread::sleep_for(kPortRetry);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    installServerLog();
    const quint16 port = ServerOptions::port();
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]) == "--search")
            return SearchShortcut::run(port);
    const pid_t frontEnd = ServerOptions::takeFrontEnd();
    // The port first, before Qt and the display: a second server leaves without touching
    // anything, and the front end's probe finds the port taken at its first look.
    std::vector<int> sockets;
    std::string notes;
    PortHolder holder;
    switch (openPort(port, sockets, notes, holder)) {
        case LoopbackSockets::Result::listening:
            break;
        case LoopbackSockets::Result::portTaken: {
            if (holder.kind != PortHolder::Kind::ourServer)
                return StartRefusal::refuse(holder, port, frontEnd, argc, argv);
            std::fprintf(
                stderr,
                "pomvarsrv: port %u is already in use: a runtime server is running already\n",
                static_cast<unsigned>(port));
            return 0;
        }
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
    // Pomvar's windows, not an unknown program's, in the taskbar and the window switcher: the
    // installed entry and icon, or the built-in copy of the icon where it is not installed.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.pomvar.Pomvar"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.pomvar.Pomvar"),
                                                 QIcon(QStringLiteral(":/pomvarsrv/pomvar.svg"))));
    // libexec/pomvar/pomvarsrv: two folders below the prefix.
    pomvar::Translations::install(
        pomvar::Translations::folderFor(QApplication::applicationDirPath(), 2));
    if (!notes.empty())
        qCInfo(lcApp).noquote() << QString::fromStdString(notes).trimmed();
    qCInfo(lcApp) << "listening on port" << port;

    ServerOptions options = ServerOptions::parse(QApplication::arguments());
    options.installDir = QApplication::applicationDirPath();
    options.calculatorModule =
        options.installDir + u'/' + QLatin1String(calculatormodule::kFileName);
    options.frontEnd = frontEnd;
    ServerApp server(options);
    server.start(sockets);
    return QApplication::exec();
}
