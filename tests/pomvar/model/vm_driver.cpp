// Builds a view model against the server at 127.0.0.1:<port>, then runs one more action, so that
// tests can watch the cases that end the process.
//   vm_driver <port> build | update | toggle <appkey> <category> | poll
#include "ipc/Output.h"
#include "model/PomvarViewModel.h"

#include <QCoreApplication>
#include <QTimer>

using namespace pomvar;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    PomvarViewModel vm(PomvarRT{ "localhost", std::stoi(argv[1]) });
    printLine("built");
    const std::string command = argv[2];
    if (command == "update") {
        vm.updateMenu();
    } else if (command == "toggle" && argc > 4) {
        printLine(vm.toggleSetAppCategory(argv[3], argv[4]) ? "isset" : "unset");
    } else if (command == "poll") {
        vm.setTerminateApplication([] { QCoreApplication::exit(0); });
        vm.checkUpdates();
        return app.exec();
    }
    printLine("done");
    return 0;
}
