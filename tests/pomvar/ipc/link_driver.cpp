// Drives the front end's side of one exchange with the runtime server at 127.0.0.1:<port> and
// prints what came back, so that tests can watch from the outside the cases that end the process.
//   link_driver <port> app-status | user-prefs | menu-status | await <id> | oversize | send <id>
//                      | build | toggle <appkey> <category> | poll
#include "ipc/RuntimeLink.h"
#include "log/Output.h"
#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"

#include <QCoreApplication>
#include <QThread>

using namespace pomvar;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    const PomvarRT server{ "localhost", std::stoi(argv[1]) };
    const std::string command = argv[2];
    const std::string id = argc > 3 ? argv[3] : "";
    if (command == "build" || command == "toggle" || command == "poll") {
        PomvarViewModel vm(server);
        printLine("built");
        if (command == "toggle" && argc > 4)
            printLine(vm.toggleSetAppCategory(argv[3], argv[4]) ? "isset" : "unset");
        if (command == "poll") {
            vm.setTerminateApplication([] { QCoreApplication::exit(0); });
            vm.checkUpdates();
            return app.exec();
        }
        return 0;
    }
    RuntimeLink link(server);
    if (command == "app-status") {
        link.getAppStatus();
        printLine("decoded");
    } else if (command == "user-prefs") {
        link.getUserPrefs();
        printLine("decoded");
    } else if (command == "menu-status") {
        link.getMenuDataModifiedStatus();
        printLine("decoded");
    } else if (command == "await") {
        const auto reply = link.sendMessageAndAwaitResponseData(request::plain(id));
        printLine(reply ? "reply: " + *reply : std::string("no reply"));
    } else if (command == "oversize") {
        link.sendMessage(std::string(65536, ' '));
        printLine("sent");
    } else if (command == "send") {
        link.sendMessage(request::plain(id));
        QThread::sleep(3); // time for the connection to be refused or to deliver
        printLine("done");
    }
    return 0;
}
