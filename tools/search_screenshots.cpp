// Takes the search window's screenshots for the documentation: run it under Xvfb with the folder
// to write to. The window is opened by an "app-search" request over the port, driven by keys,
// and grabbed: the empty query (Recent), a query with results, and an app's desktop actions.
#include "ScreenshotServer.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

using namespace pomvar;
using test::InProcessServer;

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    test::ScreenshotServer shots(
        "search_screenshots",
        { { "terminal", "Name=Terminal\nGenericName=Terminal Emulator\nIcon=utilities-terminal" },
          { "editor", "Name=Text Editor\nComment=Edit text files\nIcon=accessories-text-editor" },
          { "browser",
            "Name=Web Browser\nGenericName=Browse the Web\nIcon=web-browser\n"
            "Actions=new-window;private;\n[Desktop Action new-window]\nName=New Window\n"
            "Exec=true\n[Desktop Action private]\nName=New Private Window\nExec=true" },
          { "files", "Name=Files\nGenericName=File Manager\nIcon=system-file-manager" },
          { "calculator",
            "Name=Calculator\nComment=Perform calculations\nIcon=accessories-calculator" },
          { "characters",
            "Name=Characters\nComment=Find special characters\n"
            "Icon=accessories-character-map" },
          { "settings", "Name=Settings\nGenericName=System Settings\nIcon=preferences-system" },
          { "telescope",
            "Name=Telescope Planner\nComment=Plan a night of stargazing\nIcon=camera-photo" } },
        R"({"version": 1, "recent": ["browser.desktop", "terminal.desktop",
            "calculator.desktop"]})");
    if (shots.outputFolder(argc, argv).isEmpty())
        return 2;
    if (!shots.start() || !shots.server().send(request::plain(request::appSearch)))
        return 1;
    QWidget* window = InProcessServer::waitForWindow(QStringLiteral("searchWindow"));
    auto* field = window ? window->findChild<QLineEdit*>() : nullptr;
    if (!field)
        return 1;
    bool saved = shots.save(window, "search-recent.png");
    QTest::keyClicks(field, "te");
    saved = shots.save(window, "search-results.png") && saved;
    field->clear();
    QTest::keyClicks(field, "web");
    QTest::keyClick(field, Qt::Key_Right);
    saved = shots.save(window, "search-actions.png") && saved;
    return saved ? 0 : 1;
}
