// Takes the screenshots of the server's small windows for the documentation: run it under Xvfb
// (xvfb-run) with the folder to write to. A runtime server runs in-process over a throw-away
// desktop whose entries use icons of the system theme, starting on an empty store (so the welcome
// shows), with a newer version "installed" beside it; each window is opened by its request over
// the port and grabbed.
#include "InProcessServer.h"
#include "TestDesktop.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace pomvar;
using test::InProcessServer;
using test::TestDesktop;

namespace {

struct Entry
{
    const char* id;
    const char* lines;
};

const Entry kEntries[] = {
    { "org.example.Terminal",
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
    { "org.example.Photos", "Name=Photos\nIcon=camera-photo\nCategories=Graphics;Photography;" },
};

bool save(QWidget* window, const QString& path)
{
    if (!window)
        return false;
    QTest::qWait(200); // painted
    if (window->grab().save(path))
        return true;
    std::fprintf(stderr, "window_screenshots: cannot write %s\n", qPrintable(path));
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: window_screenshots <output folder>\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    TestDesktop desktop;
    for (const Entry& entry : kEntries)
        TestDesktop::writeEntry(desktop.systemData(),
                                QString::fromLatin1(entry.id) + ".desktop",
                                QByteArray(entry.lines).replace("Icon=", "Exec=true %U\nIcon="));
    InProcessServer::useDesktop(desktop);
    // The system theme's icons, without the system's own apps.
    QDir().mkpath(desktop.systemData() + "/icons");
    for (const char* theme : { "Adwaita", "hicolor" })
        QFile::link(QStringLiteral("/usr/share/icons/") + theme,
                    desktop.systemData() + "/icons/" + theme);
    // Beside the server, programs of a newer version.
    QTemporaryDir install;
    TestDesktop::write(install.filePath(paths::versionFile), "0.2.0\n");

    QApplication app(argc, argv);
    InProcessServer server;
    srv::ServerOptions options;
    options.installDir = install.path();
    if (!server.start(options))
        return 1;
    QTest::qWait(3000); // the icons are rendered in the background

    QWidget* welcome = InProcessServer::waitForWindow("welcomeWindow");
    bool saved = save(welcome, out + "/window-welcome.png");
    if (welcome)
        welcome->findChild<QPushButton*>("startWithCategories")->click();
    server.send(request::togglePinApp("org.example.TextEditor.desktop"));
    server.send(request::getInfoApp("org.example.TextEditor.desktop"));
    saved = save(InProcessServer::waitForWindow("appInfoWindow"), out + "/window-app-info.png") &&
            saved;
    server.send(request::getInfoAppcat("Internet"));
    saved = save(InProcessServer::waitForWindow("categoryInfoWindow"),
                 out + "/window-category-info.png") &&
            saved;
    server.send(request::plain(request::about));
    saved = save(InProcessServer::waitForWindow("aboutWindow"), out + "/window-about.png") && saved;
    server.send(request::plain(request::checkUpdates));
    saved =
        save(InProcessServer::waitForWindow("updatesWindow"), out + "/window-updates.png") && saved;
    return saved ? 0 : 1;
}
