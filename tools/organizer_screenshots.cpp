// Takes the organizer's screenshots for the documentation: run it under Xvfb with the folder to
// write to. A runtime server runs in-process over a throw-away desktop whose entries use icons
// of the system theme, with pins, categories and Recent in its store; each pane is opened by an
// "organizer" request over the port and grabbed, then the picker of "Add Apps…", filtered.
#include "InProcessServer.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
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
    { "terminal", "Name=Terminal\nGenericName=Terminal Emulator\nIcon=utilities-terminal" },
    { "editor", "Name=Text Editor\nGenericName=Text Editor\nIcon=accessories-text-editor" },
    { "browser", "Name=Web Browser\nGenericName=Web Browser\nIcon=web-browser" },
    { "files", "Name=Files\nGenericName=File Manager\nIcon=system-file-manager" },
    { "calculator", "Name=Calculator\nGenericName=Calculator\nIcon=accessories-calculator" },
    { "characters", "Name=Characters\nGenericName=Character Map\nIcon=accessories-character-map" },
    { "settings", "Name=Settings\nGenericName=System Settings\nIcon=preferences-system" },
    { "mail", "Name=Mail\nGenericName=Mail Client\nIcon=mail-send-receive" },
    { "photos", "Name=Photos\nGenericName=Image Viewer\nIcon=camera-photo" },
    { "disks", "Name=Disks\nGenericName=Disk Utility\nIcon=drive-harddisk" },
};

bool save(QWidget& window, const QString& path)
{
    QTest::qWait(300); // painted
    if (window.grab().save(path))
        return true;
    std::fprintf(stderr, "organizer_screenshots: cannot write %s\n", qPrintable(path));
    return false;
}

QWidget* open(const InProcessServer& server, OrganizerDlgMode pane, std::string_view item)
{
    if (!server.send(request::organizer(pane, item)))
        return nullptr;
    return InProcessServer::waitForWindow(QStringLiteral("organizerWindow"));
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: organizer_screenshots <output folder>\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    TestDesktop desktop;
    for (const Entry& entry : kEntries)
        TestDesktop::writeEntry(desktop.systemData(),
                                QString::fromLatin1(entry.id) + ".desktop",
                                QByteArray(entry.lines).replace("Icon=", "Exec=true\nIcon="));
    TestDesktop::write(desktop.storePath(), R"({"version": 1,
        "pins": ["browser.desktop", "terminal.desktop", "files.desktop"],
        "categories": [
            {"name": "Office", "apps": ["editor.desktop", "calculator.desktop", "mail.desktop"]},
            {"name": "System", "apps": ["settings.desktop", "disks.desktop", "terminal.desktop"]},
            {"name": "Graphics", "apps": ["photos.desktop"]}],
        "recent": ["browser.desktop", "terminal.desktop"]})");
    InProcessServer::useDesktop(desktop);
    QDir().mkpath(desktop.systemData() + "/icons");
    for (const char* theme : { "Adwaita", "hicolor" })
        QFile::link(QStringLiteral("/usr/share/icons/") + theme,
                    desktop.systemData() + "/icons/" + theme);

    QApplication app(argc, argv);
    InProcessServer server;
    if (!server.start())
        return 1;
    QTest::qWait(3000); // the icons are rendered in the background

    QWidget* window = open(server, OrganizerDlgMode::organize, "Office");
    if (!window)
        return 1;
    bool saved = save(*window, out + "/organizer-organize.png");
    window = open(server, OrganizerDlgMode::organizeApp, "terminal.desktop");
    saved = window && save(*window, out + "/organizer-app.png") && saved;
    window = open(server, OrganizerDlgMode::settings, "");
    saved = window && save(*window, out + "/organizer-settings.png") && saved;
    window = open(server, OrganizerDlgMode::organize, "Office");
    auto* add = window ? window->findChild<QPushButton*>(QStringLiteral("addApps")) : nullptr;
    if (!add)
        return 1;
    add->click();
    QWidget* picker = InProcessServer::waitForWindow(QStringLiteral("appPicker"));
    if (!picker)
        return 1;
    QTest::keyClicks(picker->findChild<QLineEdit*>(), "s");
    saved = save(*picker, out + "/organizer-picker.png") && saved;
    return saved ? 0 : 1;
}
