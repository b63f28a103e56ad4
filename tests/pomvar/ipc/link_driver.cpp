// Drives the front end's side of one exchange with the runtime server at 127.0.0.1:<port>, so
// that tests can watch from the outside the cases that end the process, or never let it end.
//   link_driver <port> app-status | user-prefs | oversize | build | toggle | poll
#include "ipc/RuntimeLink.h"
#include "model/PomvarViewModel.h"

#include <QCoreApplication>

using namespace pomvar;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    const PomvarRT server{ "localhost", std::stoi(argv[1]) };
    const std::string command = argv[2];
    if (command == "app-status")
        RuntimeLink(server).getAppStatus();
    else if (command == "user-prefs")
        RuntimeLink(server).getUserPrefs();
    else if (command == "oversize")
        RuntimeLink(server).sendMessage(std::string(65536, ' '));
    else {
        PomvarViewModel vm(server); // "build"
        if (command == "toggle")
            vm.toggleSetAppCategory("k", "c");
        if (command == "poll") {
            vm.setTerminateApplication([] { QCoreApplication::exit(0); });
            vm.checkUpdates();
            return app.exec();
        }
    }
    return 0;
}
