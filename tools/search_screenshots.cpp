// Takes the search window's screenshots for the documentation: run it under Xvfb
// (scripts/screenshots.sh) with the folder to write to. A runtime server runs in-process over a
// throw-away desktop whose entries use icons of the system theme; the window is opened by an
// "app-search" request over the port, driven by keys, and grabbed: the empty query (Recent), a
// query with results, and an app's desktop actions.
#include "InProcessServer.h"
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
    test::InProcessServer::useDesktop(desktop);
    // The system theme's icons, without the system's own apps.
    QDir().mkpath(desktop.systemData() + "/icons");
    for (const char* theme : { "Adwaita", "hicolor" })
        QFile::link(QStringLiteral("/usr/share/icons/") + theme,
                    desktop.systemData() + "/icons/" + theme);

    QApplication app(argc, argv);
    test::InProcessServer server;
    if (!server.start())
        return 1;
    QTest::qWait(3000); // the icons are rendered in the background

    QWidget* shown = server.send(request::plain(request::appSearch))
                         ? test::InProcessServer::waitForWindow(QStringLiteral("searchWindow"))
                         : nullptr;
    if (!shown)
        return 1;
    QWidget& window = *shown;
    auto* field = window.findChild<QLineEdit*>();
    bool saved = save(window, out + "/search-recent.png");
    QTest::keyClicks(field, "te");
    saved = save(window, out + "/search-results.png") && saved;
    field->clear();
    QTest::keyClicks(field, "web");
    QTest::keyClick(field, Qt::Key_Right);
    saved = save(window, out + "/search-actions.png") && saved;
    return saved ? 0 : 1;
}
