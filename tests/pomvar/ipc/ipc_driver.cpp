// Runs one exchange with the runtime server at 127.0.0.1:<port> and prints what came back,
// so that tests can watch the cases that end the process from the outside.
//   ipc_driver <port> app-status | user-prefs | menu-status | await <id> | oversize | send <id>
#include "ipc/Output.h"
#include "ipc/RequestText.h"
#include "ipc/RuntimeLink.h"

#include <chrono>
#include <iostream>
#include <thread>

using namespace pomvar;

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    RuntimeLink link(PomvarRT{ "localhost", std::stoi(argv[1]) });
    const std::string command = argv[2];
    if (command == "app-status") {
        const auto status = link.getAppStatus();
        printLine(status.toJson().dump());
    } else if (command == "user-prefs") {
        printLine(link.getUserPrefs().toJson().dump());
    } else if (command == "menu-status") {
        printLine(link.getMenuDataModifiedStatus().toJson().dump());
    } else if (command == "await" && argc > 3) {
        const auto reply = link.sendMessageAndAwaitResponseData(request::plain(argv[3]));
        printLine(reply ? "reply: " + *reply : std::string("no reply"));
    } else if (command == "oversize") {
        link.sendMessage(std::string(65536, ' '));
        printLine("sent");
    } else if (command == "send" && argc > 3) {
        link.sendMessage(request::plain(argv[3]));
        // Give the connection time to be refused or to deliver.
        std::this_thread::sleep_for(std::chrono::seconds(3));
        printLine("done");
    } else {
        return 2;
    }
    return 0;
}
