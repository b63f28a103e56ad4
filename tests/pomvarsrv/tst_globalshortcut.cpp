// The search's global shortcut. In a server run in-process on an Xvfb display of the test's own:
// Super+Space, the default, is grabbed, and pressed with xdotool it opens the search window; keys
// another X11 client holds are not grabbed, and the organizer's Settings says they are taken.
// Under GNOME the keys are a custom keybinding in a private GSettings key file instead: GNOME's
// own Super+Space (the input sources) is reported taken, other keys are written, "None" removes
// them.
#include "InProcessServer.h"
#include "TestDesktop.h"
#include "pomvarsrv/app/GlobalShortcut.h"
#include "pomvarsrv/ui/SearchSettingsBox.h"
#include "pomvarsrv/ui/ShortcutRecorder.h"
#include "wire/Protocol.h"

#include <QLabel>
#include <QProcess>
#include <QtTest>

using namespace pomvar::srv;
using namespace pomvar::test;
using State = GlobalShortcut::State;

class TestGlobalShortcut : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        InProcessServer::useDesktop(m_desktop);
        QVERIFY(m_server.start());
    }

    void grabbedOnX11AndTakenByAnother()
    {
        QCOMPARE(m_server.app().shortcut().state(), State::grabbed);
        QCOMPARE(QProcess::execute("xdotool", { "key", "super+space" }), 0);
        QVERIFY(InProcessServer::waitForWindow("searchWindow"));

        X11KeyGrab other;
        QCOMPARE(other.grab(*KeyChord::fromPortableText("Ctrl+Alt+K")),
                 X11KeyGrab::Result::grabbed);
        QVERIFY(m_server.send(pomvar::request::organizer(pomvar::OrganizerDlgMode::settings, "")));
        QWidget* organizer = InProcessServer::waitForWindow("organizerWindow");
        QVERIFY(organizer);
        auto* recorder = organizer->findChild<ShortcutRecorder*>("searchShortcut");
        auto* state = organizer->findChild<QLabel*>("searchShortcutState");
        QCOMPARE(state->text(), m_server.app().shortcut().stateText());
        recorder->click();
        QTest::keyClick(recorder, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(m_server.app().model().store().searchPrefs().shortcut, "Ctrl+Alt+K");
        QCOMPARE(m_server.app().shortcut().state(), State::taken);
        QCOMPARE(state->text(), m_server.app().shortcut().stateText());
        organizer->findChild<QPushButton*>("searchShortcutNone")->click();
        QCOMPARE(m_server.app().shortcut().state(), State::off);
    }

    void gnomeKeybindingInItsSettings()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const QString keyfile = m_desktop.configHome() + "/glib-2.0/settings/keyfile";
        GlobalShortcut gnome("pomvarsrv --search");
        gnome.apply("Meta+Space");
        QCOMPARE(gnome.state(), State::taken);
        gnome.apply("Ctrl+Alt+Space");
        QCOMPARE(gnome.state(), State::registered);
        const QByteArray written = TestDesktop::read(keyfile);
        for (const char* line : { "custom-keybindings=['/org/gnome/settings-daemon/plugins/"
                                  "media-keys/custom-keybindings/pomvar-search/']",
                                  "binding='<Primary><Alt>space'",
                                  "command='pomvarsrv --search'" })
            QVERIFY2(written.contains(line), written.constData());
        gnome.apply("");
        QCOMPARE(gnome.state(), State::off);
        const QByteArray removed = TestDesktop::read(keyfile);
        QVERIFY2(removed.contains("custom-keybindings=[]\n"), removed.constData());
    }

private:
    TestDesktop m_desktop;
    InProcessServer m_server;
};

QTEST_MAIN(TestGlobalShortcut)
#include "tst_globalshortcut.moc"
