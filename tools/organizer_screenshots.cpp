// Takes the organizer's screenshots for the documentation: run it under Xvfb with the folder to
// write to. The store holds pins, categories and Recent; each pane is opened by an "organizer"
// request over the port and grabbed, then the picker of "Add Apps…", filtered.
#include "ScreenshotServer.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace pomvar;
using test::InProcessServer;

namespace {

QWidget* open(const InProcessServer& server, OrganizerDlgMode pane, std::string_view item)
{
    if (!server.send(request::organizer(pane, item)))
        return nullptr;
    return InProcessServer::waitForWindow(QStringLiteral("organizerWindow"));
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    test::ScreenshotServer shots(
        "organizer_screenshots",
        { { "terminal", "Name=Terminal\nGenericName=Terminal Emulator\nIcon=utilities-terminal" },
          { "editor", "Name=Text Editor\nGenericName=Text Editor\nIcon=accessories-text-editor" },
          { "browser", "Name=Web Browser\nGenericName=Web Browser\nIcon=web-browser" },
          { "files", "Name=Files\nGenericName=File Manager\nIcon=system-file-manager" },
          { "calculator", "Name=Calculator\nGenericName=Calculator\nIcon=accessories-calculator" },
          { "characters",
            "Name=Characters\nGenericName=Character Map\nIcon=accessories-character-map" },
          { "settings", "Name=Settings\nGenericName=System Settings\nIcon=preferences-system" },
          { "mail", "Name=Mail\nGenericName=Mail Client\nIcon=mail-send-receive" },
          { "photos", "Name=Photos\nGenericName=Image Viewer\nIcon=camera-photo" },
          { "disks", "Name=Disks\nGenericName=Disk Utility\nIcon=drive-harddisk" } },
        R"({"version": 1,
        "pins": ["browser.desktop", "terminal.desktop", "files.desktop"],
        "categories": [
            {"name": "Office", "apps": ["editor.desktop", "calculator.desktop", "mail.desktop"]},
            {"name": "System", "apps": ["settings.desktop", "disks.desktop", "terminal.desktop"]},
            {"name": "Graphics", "apps": ["photos.desktop"]}],
        "recent": ["browser.desktop", "terminal.desktop"],
        "hidden": ["characters.desktop"]})");
    if (shots.outputFolder(argc, argv).isEmpty())
        return 2;
    if (!shots.start())
        return 1;
    const InProcessServer& server = shots.server();
    bool saved =
        shots.save(open(server, OrganizerDlgMode::organize, "Office"), "organizer-organize.png");
    saved = shots.save(open(server, OrganizerDlgMode::organizeApp, "terminal.desktop"),
                       "organizer-app.png") &&
            saved;
    saved =
        shots.save(open(server, OrganizerDlgMode::settings, ""), "organizer-settings.png") && saved;
    QWidget* window = open(server, OrganizerDlgMode::organize, "Office");
    auto* add = window ? window->findChild<QPushButton*>(QStringLiteral("addApps")) : nullptr;
    if (!add)
        return 1;
    add->click();
    QWidget* picker = InProcessServer::waitForWindow(QStringLiteral("appPicker"));
    if (!picker)
        return 1;
    QTest::keyClicks(picker->findChild<QLineEdit*>(), "s");
    saved = shots.save(picker, "organizer-picker.png") && saved;
    return saved ? 0 : 1;
}
