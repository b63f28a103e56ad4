// Takes the screenshots of the server's small windows for the documentation: run it under Xvfb
// with the folder to write to. The server starts on an empty store (so the welcome shows), with
// a newer version "installed" beside it; each window is opened by its request over the port and
// grabbed, then the editor of an app.
#include "ScreenshotServer.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QPushButton>
#include <QTemporaryDir>

using namespace pomvar;
using test::InProcessServer;

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    test::ScreenshotServer shots(
        "window_screenshots",
        { { "org.example.Terminal",
            "Name=Terminal\nGenericName=Terminal Emulator\nComment=Use the command line\n"
            "Icon=utilities-terminal\nCategories=GTK;System;TerminalEmulator;" },
          { "org.example.TextEditor",
            "Name=Text Editor\nGenericName=Text Editor\nComment=Edit text files\n"
            "Icon=accessories-text-editor\nCategories=GNOME;GTK;Utility;TextEditor;" },
          { "org.example.Browser",
            "Name=Web Browser\nGenericName=Browse the Web\nIcon=web-browser\n"
            "Categories=Network;WebBrowser;" },
          { "org.example.Mail", "Name=Mail\nIcon=mail-unread\nCategories=Network;Email;" },
          { "org.example.Calculator",
            "Name=Calculator\nComment=Perform calculations\nIcon=accessories-calculator\n"
            "Categories=Utility;Calculator;" },
          { "org.example.Music", "Name=Music\nIcon=audio-x-generic\nCategories=AudioVideo;Audio;" },
          { "org.example.Photos",
            "Name=Photos\nIcon=camera-photo\nCategories=Graphics;Photography;" } });
    if (shots.outputFolder(argc, argv).isEmpty())
        return 2;
    // Beside the server, programs of a newer version.
    QTemporaryDir install;
    test::TestDesktop::write(install.filePath(paths::versionFile), "0.2.0\n");
    srv::ServerOptions options;
    options.installDir = install.path();
    if (!shots.start(options))
        return 1;
    const InProcessServer& server = shots.server();
    QWidget* welcome = InProcessServer::waitForWindow("welcomeWindow");
    bool saved = shots.save(welcome, "window-welcome.png");
    if (welcome)
        welcome->findChild<QPushButton*>("startWithCategories")->click();
    server.send(request::togglePinApp("org.example.TextEditor.desktop"));
    const std::tuple<std::string, const char*, const char*> windows[] = {
        { request::getInfoApp("org.example.TextEditor.desktop"), "appInfoWindow", "app-info" },
        { request::getInfoAppcat("Internet"), "categoryInfoWindow", "category-info" },
        { request::plain(request::about), "aboutWindow", "about" },
        { request::plain(request::checkUpdates), "updatesWindow", "updates" },
    };
    for (const auto& [body, window, file] : windows) {
        server.send(body);
        saved = shots.save(InProcessServer::waitForWindow(window),
                           QStringLiteral("window-%1.png").arg(file)) &&
                saved;
    }
    // The editor of the app, from its details.
    server.send(request::getInfoApp("org.example.TextEditor.desktop"));
    if (QWidget* info = InProcessServer::waitForWindow("appInfoWindow"))
        info->findChild<QPushButton*>("edit")->click();
    saved =
        shots.save(InProcessServer::waitForWindow("appEditDialog"), "window-app-edit.png") && saved;
    return saved ? 0 : 1;
}
