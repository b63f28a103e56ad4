// Takes the search window's screenshots for the documentation: run it under Xvfb
// (scripts/screenshots.sh) with the folder to write to. A runtime server runs in-process over a
// throw-away desktop whose entries use icons of the system theme; the window is opened by an
// "app-search" request over the port, driven by keys, and grabbed: the empty query (Recent), a
// query with results, and an app's desktop actions.
#include "LoopbackSockets.h"
#include "ServerApp.h"
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTest>

#include <cstdio>

using namespace pomvar;
using test::TestDesktop;

namespace {

struct Entry
{
    const char* id;
    const char* lines;
};

const Entry kEntries[] = {
    { "terminal", "Name=Terminal\nGenericName=Terminal Emulator\nIcon=utilities-terminal" },
    { "editor", "Name=Text Editor\nComment=Edit text files\nIcon=accessories-text-editor" },
    { "browser",
      "Name=Web Browser\nGenericName=Browse the Web\nIcon=web-browser\n"
      "Actions=new-window;private;\n[Desktop Action new-window]\nName=New Window\nExec=true\n"
      "[Desktop Action private]\nName=New Private Window\nExec=true" },
    { "files", "Name=Files\nGenericName=File Manager\nIcon=system-file-manager" },
    { "calculator", "Name=Calculator\nComment=Perform calculations\nIcon=accessories-calculator" },
    { "characters",
      "Name=Characters\nComment=Find special characters\n"
      "Icon=accessories-character-map" },
    { "settings", "Name=Settings\nGenericName=System Settings\nIcon=preferences-system" },
    { "telescope",
      "Name=Telescope Planner\nComment=Plan a night of stargazing\nIcon=camera-photo" },
};

bool save(QWidget& window, const QString& path)
{
    QTest::qWait(200); // painted
    if (window.grab().save(path))
        return true;
    std::fprintf(stderr, "search_screenshots: cannot write %s\n", qPrintable(path));
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: search_screenshots <output folder>\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    TestDesktop desktop;
    for (const Entry& entry : kEntries)
        TestDesktop::writeEntry(desktop.systemData(),
                                QString::fromLatin1(entry.id) + ".desktop",
                                QByteArray(entry.lines).replace("Icon=", "Exec=true\nIcon="));
    TestDesktop::write(desktop.storePath(),
                       R"({"version": 1, "recent": ["browser.desktop", "terminal.desktop",
                           "calculator.desktop"]})");
    const QProcessEnvironment env = desktop.environment(0);
    for (const char* name : { "HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME" })
        qputenv(name, env.value(name).toUtf8());
    // The system theme's icons, without the system's own apps.
    QDir().mkpath(desktop.systemData() + "/icons");
    for (const char* theme : { "Adwaita", "hicolor" })
        QFile::link(QStringLiteral("/usr/share/icons/") + theme,
                    desktop.systemData() + "/icons/" + theme);
    qputenv("XDG_DATA_DIRS", desktop.systemData().toUtf8());

    QApplication app(argc, argv);
    const quint16 port = test::ServerProcess::freePort();
    std::vector<int> sockets;
    std::string notes;
    if (srv::LoopbackSockets::open(port, sockets, notes) != srv::LoopbackSockets::Result::listening)
        return 1;
    srv::ServerApp server(srv::ServerOptions{});
    server.start(sockets);
    QTest::qWait(3000); // the icons are rendered in the background

    test::SrvClient client;
    if (!client.connectTo(port) || !client.send(request::plain(request::appSearch)))
        return 1;
    QLineEdit* field = nullptr;
    if (!QTest::qWaitFor([&] {
            for (QWidget* window : QApplication::topLevelWidgets())
                if (window->objectName() == "searchWindow" && window->isVisible())
                    field = window->findChild<QLineEdit*>();
            return field != nullptr;
        }))
        return 1;
    QWidget& window = *field->window();
    bool saved = save(window, out + "/search-recent.png");
    QTest::keyClicks(field, "te");
    saved = save(window, out + "/search-results.png") && saved;
    field->clear();
    QTest::keyClicks(field, "web");
    QTest::keyClick(field, Qt::Key_Right);
    saved = save(window, out + "/search-actions.png") && saved;
    return saved ? 0 : 1;
}
