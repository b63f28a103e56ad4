// The server's windows, in a server run in-process over real desktop entries, opened by their
// requests over the wire and driven by keys: what each shows, one window per kind switched by the
// next request, Escape, and what their buttons do. The server starts on an empty store, so the
// welcome shows at once; its categories are read back over the wire. The options that start it:
// --welcome and the port. The search window launches through the same path as "launch" (Recent,
// read back over the wire), lists and launches an app's desktop actions, closes when it loses the
// focus; rows draw the icon file for the display's scale, the highlighted one readable under a
// light and a dark palette; an expression's answer comes first and Enter copies it; the desktop's
// search providers, on a private session bus, answer below the apps within their time. The
// organizer, driven through its widgets while what the front end would read is asked over the wire:
// one window following each request, each change shown in My Apps and the panes, the payload's
// order after reordering by buttons, keys and drops, the name rule told inside the dialog, the five
// preferences and the autostart entry. Updates the
// Linux way, the install folder a temporary one: the version file installed there against the
// running version, over the wire and in the updates window; a change of the folder noticed while
// the window is open; the wait for the front end to go; what may be started as the front end; the
// restart into the installed front end and "updateFinished" once after it, last.
#include "ChildProcess.h"
#include "IconFiles.h"
#include "InProcessServer.h"
#include "Palettes.h"
#include "SessionBus.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/app/FrontEndExit.h"
#include "pomvarsrv/app/Updates.h"
#include "pomvarsrv/catalogue/AutostartEntry.h"
#include "pomvarsrv/ui/AppInfoWindow.h"
#include "pomvarsrv/ui/CategoryInfoWindow.h"
#include "pomvarsrv/ui/OrganizerListModel.h"
#include "pomvarsrv/ui/OrganizerListView.h"
#include "pomvarsrv/ui/OrganizerWindow.h"
#include "pomvarsrv/ui/SearchResultDelegate.h"
#include "pomvarsrv/ui/SearchResults.h"
#include "wire/InstallPaths.h"
#include "wire/Protocol.h"
#include "wire/RuntimeEndpoint.h"
#include "wire/Version.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

#include <csignal>
#include <unistd.h>

using namespace pomvar;
using namespace pomvar::srv;
using namespace pomvar::test;
namespace rq = pomvar::request;
using Json = nlohmann::json;

namespace {

const char* const kStore = R"({"version": 1,
    "pins": ["alpha.desktop", "beta.desktop", "gamma.desktop"],
    "categories": [{"name": "Games", "apps": ["alpha.desktop", "beta.desktop", "gamma.desktop"]},
                   {"name": "Office", "apps": ["delta.desktop"]}, {"name": "Tools"}],
    "recent": ["alpha.desktop", "beta.desktop"]})";

// The visible widget of that object name, or of that text for a button.
template <typename T = QWidget>
T* find(const QString& name)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        for (T* found : window->findChildren<T*>()) {
            auto* button = qobject_cast<QAbstractButton*>(found);
            if (found->isVisible() &&
                (found->objectName() == name || (button && button->text() == name)))
                return found;
        }
    }
    return nullptr;
}

// org.gnome.Shell.SearchProvider2 answering after `delayMs` (never when negative); it notes what
// it is asked.
struct TestProvider : QDBusVirtualObject
{
    TestProvider(QString name, int delayMs)
        : m_name(std::move(name))
        , m_delayMs(delayMs)
    {}

    const QString m_name;
    const int m_delayMs;
    QStringList calls;
    int replies = 0;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QVariantList in = message.arguments();
        const QVariant first = in.value(0);
        calls << message.member() + ' ' +
                     (first.typeId() == QMetaType::QString ? first.toString()
                                                           : first.toStringList().join(',')) +
                     ' ' + in.value(1).toStringList().join(',');
        QDBusMessage reply = message.createReply();
        if (message.member() == "GetInitialResultSet") {
            reply << QStringList{ m_name + "-1", m_name + "-2" };
        } else if (message.member() == "GetResultMetas") {
            QDBusArgument metas;
            metas.beginArray(QMetaType::fromType<QVariantMap>());
            for (const QString& id : in.value(0).toStringList())
                metas << QVariantMap{ { QStringLiteral("id"), id },
                                      { QStringLiteral("name"), QString("Result " + id) } };
            metas.endArray();
            reply << QVariant::fromValue(metas);
        }
        if (m_delayMs < 0)
            return true;
        QTimer::singleShot(m_delayMs, [this, reply, connection] {
            QDBusConnection(connection).send(reply);
            ++replies;
        });
        return true;
    }
};

} // namespace

class TestServerWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openUrl(const QUrl& url) { m_opened = url; }

private Q_SLOTS:
    void initTestCase()
    {
        // Two programs that note their first argument in a file of that name beside them; the
        // search's finds its apps by its name.
        m_opener = m_desktop.root() + "/bin/opener";
        m_marker = m_desktop.root() + "/bin/marker";
        for (const QString& program : { m_opener, m_marker })
            QVERIFY(TestDesktop::write(program, "#!/bin/sh\ntouch \"$0.$1\"\n", true));
        const QByteArray exec = "Exec=" + m_opener.toUtf8(), mark = "Exec=" + m_marker.toUtf8();
        const std::pair<const char*, QByteArray> entries[] = {
            { "editor",
              "Name=Editor\nGenericName=Text Editor\nComment=Edit plain text\n" + exec +
                  " editor %F\nCategories=GTK;Utility;TextEditor;" },
            { "shell",
              "Name=Shell\nGenericName=Shell\nTerminal=true\n" + exec +
                  " shell\nCategories=System;" },
            { "panel", "Name=Control Panel\n" + exec + " panel\nCategories=Settings;System;" },
            { "music", "Name=Music\n" + exec + " music\nCategories=Audio;AudioVideo;" },
            { "plain", "Name=Plain\n" + exec + " plain" },
            { "marker", "Name=Marker\nComment=Leaves a mark\n" + mark + " app" },
            { "browser",
              "Name=Browser\nGenericName=Web Browser\n" + mark +
                  " browser\nActions=new-window;\n[Desktop Action new-window]\nName=New Window\n" +
                  mark + " window" },
            { "marble", "Name=Marble\n" + mark + " marble" },
            { "delta", "Name=Delta\nExec=true\nGenericName=Spreadsheet" },
            { "notes", "Name=Quick Notes\nExec=true" },
        };
        for (const auto& [id, lines] : entries)
            QVERIFY(TestDesktop::writeEntry(
                m_desktop.systemData(), QString::fromLatin1(id) + ".desktop", lines));
        // The organizer's other apps, and the search providers'.
        for (const QString name : { "Alpha", "Beta", "Gamma", "Epsilon", "QUICK", "LATE", "NEVER" })
            QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(),
                                            name.toLower() + ".desktop",
                                            "Name=" + name.toUtf8() + "\nExec=true"));
        // <prefix>/bin/pomvar, the installed front end, notes that it was started.
        QVERIFY(TestDesktop::write(
            m_prefix.filePath("bin/pomvar"), "#!/bin/sh\ntouch \"$0.started\"\n", true));
        // Three providers on a private session bus: answering at once, late and never.
        QVERIFY(m_bus.start());
        m_bus.useInThisProcess();
        m_providers = QDBusConnection::connectToBus(m_bus.address(), "providers");
        for (const auto& [name, provider] :
             { std::pair("quick", &m_quick), { "late", &m_late }, { "never", &m_never } }) {
            QVERIFY(TestDesktop::write(
                m_desktop.systemData() + "/gnome-shell/search-providers/" + name + ".ini",
                QByteArray("[Shell Search Provider]\nDesktopId=") + name +
                    ".desktop\nBusName=org.pomvar.Test." + name + "\nObjectPath=/org/pomvar/Test/" +
                    name + "\nVersion=2\n"));
            QVERIFY(m_providers.registerService(QString("org.pomvar.Test.") + name) &&
                    m_providers.registerVirtualObject(QString("/org/pomvar/Test/") + name,
                                                      provider,
                                                      QDBusConnection::SingleNode));
        }
        InProcessServer::useDesktop(m_desktop);
        QDesktopServices::setUrlHandler("file", this, "openUrl");
        QVERIFY(m_server.start(options()));
    }

    void welcomeAtTheFirstStartMakesCategoriesFromTheEntries()
    {
        QWidget* welcome = InProcessServer::waitForWindow("welcomeWindow");
        QVERIFY(welcome);
        QVERIFY(QFile::exists(m_desktop.storePath())); // so it never shows again
        QTest::keyClick(welcome, Qt::Key_Return);      // "Start with categories", the default
        QVERIFY(!welcome->isVisible());
        JCOMPARE(ask(rq::getMenuDataModifiedStatus)["appcatsModified"], true);
        QCOMPARE(summary(),
                 " | Accessories: editor | Settings: panel | Sound & Video: music | System: shell");
        QVERIFY(m_server.send(rq::togglePinApp("editor.desktop"))); // for the info window
        // Another start on this store shows no welcome, unless asked to.
        for (const bool asked : { false, true }) {
            welcome->close();
            InProcessServer again;
            ServerOptions options;
            options.welcome = asked;
            QVERIFY(again.start(options)); // which shows it, or not
            int shown = 0;
            for (QWidget* window : QApplication::topLevelWidgets())
                shown += window->objectName() == "welcomeWindow" && window->isVisible();
            QCOMPARE(shown, asked ? 1 : 0);
        }
    }

    // The desktop's search providers: the apps show at once; only the first provider's results
    // follow, under its app's name; the late one is never asked for its results; activating one
    // hands it to its provider with the terms; the organizer's Settings turns providers off, one
    // and all. The searches that follow are the apps' alone.
    void providersAnswerBelowTheAppsWithinTheirTime()
    {
        QLineEdit* field = openSearch();
        QVERIFY(field);
        auto* list = field->window()->findChild<QListView*>();
        QTest::keyClicks(field, "quick");
        // The apps at once; the quick provider's results below them, under its name.
        QCOMPARE(rowNames(list), (QStringList{ "QUICK", "Quick Notes" }));
        QTRY_COMPARE(
            rowNames(list),
            (QStringList{ "QUICK", "Quick Notes", "QUICK", "Result quick-1", "Result quick-2" }));
        // The late answers (one per key typed) come after the deadline: their results are never
        // asked for, nor the never answering one's.
        QTRY_COMPARE(m_late.replies, 5);
        settle();
        QCOMPARE(m_late.calls.filter("GetResultMetas") + m_never.calls.filter("GetResultMetas"),
                 QStringList{});
        QCOMPARE(m_never.calls.size(), 5);
        QCOMPARE(rowNames(list).size(), 5);
        // Down past the apps and the name: the provider activates its result with the terms.
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(m_quick.calls.last(), "ActivateResult quick-1 quick");
    }

    void settingsTurnProvidersOff()
    {
        OrganizerWindow* organizer = openOrganizer(2, {});
        QVERIFY(organizer);
        // The providers asked for a query typed in the search window.
        const auto askedFor = [&](const QString& text) {
            QLineEdit* field = openSearch();
            field->setText(text);
            settle();
            field->clear();
            field->window()->close();
            QStringList asked;
            for (const auto& [name, provider] :
                 { std::pair("quick", &m_quick), { "late", &m_late } })
                if (provider->calls.contains("GetInitialResultSet " + text + ' '))
                    asked << name;
            return asked;
        };
        const auto boxes = organizer->findChildren<QCheckBox*>("searchProvider");
        QCOMPARE(boxes.size(), 3);
        boxes[2]->click(); // quick, in the files' order: late, never, quick
        QCOMPARE(askedFor("first"), QStringList{ "late" });
        organizer->findChild<QCheckBox*>("searchProviders")->click();
        QCOMPARE(askedFor("second"), QStringList{});
    }

    // The search window, before anything is launched.
    void keysSearchLaunchAndShowActions()
    {
        QLineEdit* field = openSearch();
        QVERIFY(field);
        auto* window = field->window();
        auto* list = window->findChild<QListView*>();
        QTest::keyClicks(field, "mar");
        // Name prefixes, in catalogue order, then the program that all three run.
        QCOMPARE(rowNames(list), (QStringList{ "Marble", "Marker", "Browser" }));
        // End, Page Up, Home and Page Down move through the results.
        for (const auto& [key, row] : { std::pair(Qt::Key_End, 2),
                                        { Qt::Key_PageUp, 0 },
                                        { Qt::Key_PageDown, 2 },
                                        { Qt::Key_Home, 0 } }) {
            QTest::keyClick(field, key);
            QCOMPARE(list->currentIndex().row(), row);
        }
        // Down, Enter: the second launches, through the wire's "launch" path.
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(QFile::exists(m_marker + ".app"));
        QVERIFY(!window->isVisible());
        const nlohmann::json recent = ask(rq::getRecentAppsMenuData);
        QCOMPARE(recent[0]["appkey"], "marker.desktop");

        // A second request shows the same window, its text selected; the empty query lists Recent.
        QCOMPARE(openSearch(), field);
        QCOMPARE(field->selectedText(), "mar");
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(field->text().isEmpty() && window->isVisible());
        QCOMPARE(rowNames(list), QStringList{ "Marker" });
        // Right at the end of the text lists the actions; Left goes back; Enter launches one.
        QTest::keyClicks(field, "web");
        QTest::keyClick(field, Qt::Key_Right);
        QCOMPARE(rowNames(list), QStringList{ "New Window" });
        QTest::keyClick(field, Qt::Key_Left);
        QCOMPARE(rowNames(list), QStringList{ "Browser" });
        QTest::keyClick(field, Qt::Key_Return, Qt::AltModifier);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(QFile::exists(m_marker + ".window"));
        // Ctrl+1 and Ctrl+2 launch the first and the second result: Marker, used now, before
        // Marble. Escape on an empty field closes.
        for (const auto& [key, mark] : { std::pair(Qt::Key_1, ".app"), { Qt::Key_2, ".marble" } }) {
            QVERIFY(QFile::remove(m_marker + mark) || !QFile::exists(m_marker + mark));
            openSearch();
            QTest::keyClicks(field, "mar");
            QTest::keyClick(field, key, Qt::ControlModifier);
            QTRY_VERIFY(QFile::exists(m_marker + mark));
        }
        // An expression: the calculator's answer comes first, selected; Enter copies it.
        openSearch();
        QTest::keyClicks(field, "2*(3+4)");
        QTRY_COMPARE(rowNames(list).value(0), "14");
        QCOMPARE(list->currentIndex().row(), 0);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(QGuiApplication::clipboard()->text(), "14");
        openSearch();
        field->clear();
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!window->isVisible());
    }

    void clicksAndFocusLoss()
    {
        QLineEdit* field = openSearch();
        QVERIFY(field);
        auto* list = field->window()->findChild<QListView*>();
        QTest::keyClicks(field, "browser");
        // A right-click shows the actions, as the window system delivers it.
        const QPoint row = list->visualRect(list->model()->index(0, 0)).center();
        QTest::mouseClick(field->window()->windowHandle(),
                          Qt::RightButton,
                          {},
                          list->viewport()->mapTo(field->window(), row));
        QTRY_COMPARE(rowNames(list), QStringList{ "New Window" });
        // Another window taking the focus closes it.
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!field->window()->isVisible());
        QVERIFY(QFile::remove(m_marker + ".app") || !QFile::exists(m_marker + ".app"));
        QCOMPARE(openSearch(), field);
        QTest::keyClicks(field, "marker");
        // The highlighted row reads under a light and a dark palette: "Marker", then "Leaves a
        // mark", right of the icon.
        for (const QPalette& palette : { lightPalette(), darkPalette() }) {
            list->setPalette(palette);
            const QImage image =
                list->viewport()->grab(list->visualRect(list->currentIndex())).toImage();
            const QColor highlight = palette.color(QPalette::Highlight);
            QCOMPARE(image.pixelColor(image.width() - 4, 2), highlight);
            const int left = int(44 * image.devicePixelRatio()), half = image.height() / 2;
            for (const int top : { 0, half })
                QVERIFY(textContrast(
                            image, QRect(left, top, image.width() - left, half), highlight) >= 4.5);
        }
        // A click launches.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row);
        QTRY_VERIFY(QFile::exists(m_marker + ".app"));
    }

    void rowsDrawTheIconFileForTheScale()
    {
        QTemporaryDir dir;
        const QString small = dir.filePath("24.png"), large = dir.filePath("48.png");
        QVERIFY(IconFiles::writePng(small, 24, 24, Qt::red) &&
                IconFiles::writePng(large, 48, 48, Qt::blue));
        SearchResults model;
        model.setRows({ { "k", "Name", "Detail", small, large } });
        SearchResultDelegate delegate;
        for (const auto& [ratio, colour] : { std::pair(1.0, QColor(Qt::red)), { 2.0, Qt::blue } }) {
            QImage image(QSize(600, 44) * ratio, QImage::Format_ARGB32);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::white);
            QPainter painter(&image);
            QStyleOptionViewItem option;
            option.rect = QRect(0, 0, 600, 44);
            option.state = QStyle::State_Enabled;
            delegate.paint(&painter, option, model.index(0));
            painter.end();
            QCOMPARE(image.pixelColor(QPoint(22, 22) * ratio), colour);
        }
    }

    // POMVARSRV_PORT, for tests, when it holds a valid port; the runtime port otherwise.
    void portOption()
    {
        const int fixed = pomvar::wire::kRuntimePort;
        for (const auto& [value, port] :
             { std::pair("1", 1), { "65535", 65535 }, { "0", fixed }, { "65536", fixed } }) {
            qputenv("POMVARSRV_PORT", value);
            QCOMPARE(int(ServerOptions::port()), port);
        }
        qunsetenv("POMVARSRV_PORT");
    }

    void appInfo_data()
    {
        QTest::addColumn<QString>("appkey");
        QTest::addColumn<QString>("shown"); // objectName=text of the labels, parted by ';'
        const QString path = m_desktop.systemData() + "/applications/editor.desktop";
        QTest::newRow("pinned, in a category")
            << "editor.desktop"
            << "appName=Editor;appGenericName=Text Editor;appComment=Edit plain text;appId=editor."
               "desktop;appPath=" +
                   path + ";appCommand=" + m_opener +
                   " editor;appCategories=GTK, Utility, TextEditor;appTerminal=No;appPinned=Yes;"
                   "appPomvarCategories=Accessories";
        QTest::newRow("in a terminal")
            << "shell.desktop"
            << "appName=Shell;appTerminal=Yes;appPinned=No;appCategories="
               "System;appPomvarCategories=System";
        QTest::newRow("plain") << "plain.desktop"
                               << "appName=Plain;appCategories=None;appPomvarCategories=None";
    }
    void appInfo()
    {
        QFETCH(QString, appkey);
        QFETCH(QString, shown);
        // Each switches the window shown. The name shows once: a generic name only when it
        // says something else, the command without its field codes.
        auto* window =
            openWindow<AppInfoWindow>(rq::getInfoApp(appkey.toStdString()),
                                      "appInfo",
                                      shown.section(u'=', 1, 1).section(u';', 0, 0) + " Details");
        QVERIFY(window);
        for (const QString& line : shown.split(u';'))
            QCOMPARE(window->findChild<QLabel*>(line.section(u'=', 0, 0))->text(),
                     line.section(u'=', 1));
        QVERIFY(!window->findChild<QLabel*>("appGenericName")->isHidden() ==
                shown.contains("appGenericName=Text Editor"));
    }

    void appInfoButtonsAndKeys()
    {
        auto* window = openWindow<AppInfoWindow>(
            rq::getInfoApp("editor.desktop"), "appInfo", "Editor Details");
        QVERIFY(window);
        // Tab reaches the values to copy and every button, Open first.
        QCOMPARE(
            tabStops().join(' '),
            "open close appId appPath openContainingFolder appCommand appHidden edit organize");
        QSignalSpy organize(window, &AppInfoWindow::organizeRequested);
        window->findChild<QPushButton*>("openContainingFolder")->click();
        QCOMPARE(m_opened, QUrl::fromLocalFile(m_desktop.systemData() + "/applications"));
        window->findChild<QPushButton*>("organize")->click();
        QCOMPARE(organize.value(0), QVariantList{ "editor.desktop" });
        QVERIFY(!window->isVisible());
        // Enter opens it: launched as "launch" would, then the window closes.
        QCOMPARE(openWindow<AppInfoWindow>(
                     rq::getInfoApp("editor.desktop"), "appInfo", "Editor Details"),
                 window);
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_VERIFY(QFile::exists(m_opener + ".editor"));
        JCOMPARE(ask(rq::getRecentAppsMenuData)[0]["appkey"], "editor.desktop");
        // An unknown key says so; Escape closes.
        QCOMPARE(
            openWindow<AppInfoWindow>(rq::getInfoApp("gone.desktop"), "appInfo", "App Details"),
            window);
        QCOMPARE(window->findChild<QLabel*>("appMissing")->text(),
                 "No installed app has the key \u201cgone.desktop\u201d.");
        QVERIFY(window->findChild<QPushButton*>("open")->isHidden());
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(!window->isVisible());
    }

    // "Hidden" and "Edit…" of the info window, through the real catalogue: a hidden app leaves
    // the menus, its pin and category included, and the search, then comes back; an edit is the
    // user's own copy of the entry, valid, which the catalogue shows at once, until reverted.
    void hideAndEdit()
    {
        auto* window = openWindow<AppInfoWindow>(
            rq::getInfoApp("editor.desktop"), "appInfo", "Editor Details");
        QVERIFY(window);
        // All Apps, Recent, pinned, Accessories and the search.
        QCOMPARE(editorShown(), 5);
        for (const int shown : { 0, 5 }) {
            window->findChild<QCheckBox*>("appHidden")->click();
            QCOMPARE(editorShown(), shown);
        }
        window->findChild<QPushButton*>("edit")->click();
        QWidget* editor = InProcessServer::waitForWindow("appEditDialog");
        // Enter saves.
        const auto type = [&](const char* field, const QString& text) {
            editor->findChild<QLineEdit*>(field)->setText(text);
            QTest::keyClick(editor->findChild<QLineEdit*>(field), Qt::Key_Return);
        };
        editor->findChild<QCheckBox*>("editCategoryDevelopment")->click();
        editor->findChild<QLineEdit*>("editName")->setText("Writer");
        type("editCommand", "echo $HOME");
        QCOMPARE(editor->findChild<QLabel*>("editProblem")->text(),
                 "\u201c$\u201d must be inside double quotes.");
        type("editCommand", m_opener + " writer %F");
        QVERIFY(!editor->isVisible());
        const QString copy = m_desktop.dataHome() + "/applications/editor.desktop";
        const auto valid = runChild("desktop-file-validate", { copy });
        QVERIFY2(valid.exitedWith(0) && !valid.out.contains("error") && !valid.out.contains("warn"),
                 valid.out.constData());
        QVERIFY(TestDesktop::read(copy).contains(QByteArray(
            "Name=Writer\nGenericName=Text Editor\nComment=Edit plain text\nExec=" +
            m_opener.toUtf8() + " writer %F\nCategories=GTK;Utility;TextEditor;Development;\n")));
        // All Apps' name of the app, and the window's title.
        const auto shown = [&]() -> QString {
            for (const Json& app : ask(rq::getAllAppsMenuData))
                if (app["appkey"] == "editor.desktop")
                    return QString::fromStdString(app["name"]) + " " + window->windowTitle();
            return QString();
        };
        QTRY_COMPARE(shown(), "Writer Writer Details");
        // Reverted: the installed entry shows again.
        window->findChild<QPushButton*>("edit")->click();
        editor = InProcessServer::waitForWindow("appEditDialog");
        QCOMPARE(editor->findChild<QLineEdit*>("editName")->text(), "Writer");
        editor->findChild<QPushButton*>("editRevert")->click();
        QVERIFY(!QFile::exists(copy));
        QTRY_COMPARE(shown(), "Editor Editor Details");
    }

    void categoryInfo()
    {
        QVERIFY(m_server.send(rq::toggleSetAppcat("plain.desktop", "System")));
        auto* window =
            openWindow<CategoryInfoWindow>(rq::getInfoAppcat("System"), "categoryInfo", "System");
        QVERIFY(window);
        auto* apps = window->findChild<QListWidget*>();
        QCOMPARE(apps->count(), 2);
        QCOMPARE(apps->item(1)->text(), "Plain");
        QVERIFY(!apps->item(1)->icon().isNull());
        // The list has the focus; Enter on an app shows its info.
        QCOMPARE(QApplication::focusWidget(), apps);
        QTest::keyClick(apps, Qt::Key_Down);
        QTest::keyClick(apps, Qt::Key_Return);
        auto* info = InProcessServer::waitForWindow<AppInfoWindow>("appInfoWindow");
        QVERIFY(info && info->appkey() == "plain.desktop" && window->isVisible());
        QVERIFY(info->findChild<QLabel*>("appMissing")->isHidden());
        QCOMPARE(openWindow<CategoryInfoWindow>(
                     rq::getInfoAppcat("Gone"), "categoryInfo", "Category Info"),
                 window);
        QCOMPARE(window->findChild<QLabel*>("categoryCount")->text(),
                 "There is no category named \u201cGone\u201d.");
        QVERIFY(apps->isHidden());
        QCOMPARE(QApplication::focusWidget()->objectName(), "close");
        // An empty one: Organize takes the focus, as there is nothing to list.
        QVERIFY(m_server.send(rq::toggleSetAppcat("music.desktop", "Sound & Video")));
        QCOMPARE(openWindow<CategoryInfoWindow>(
                     rq::getInfoAppcat("Sound & Video"), "categoryInfo", "Sound & Video"),
                 window);
        QCOMPARE(QApplication::focusWidget()->objectName(), "organize");
        window->findChild<QPushButton*>("close")->click();
        QVERIFY(!window->isVisible());
    }

    void about()
    {
        QVERIFY(m_server.send(rq::plain(rq::about)));
        QWidget* window = InProcessServer::waitForWindow("aboutWindow");
        QVERIFY(window);
        // Its version line: a11y_windows.
        QVERIFY(window->findChild<QLabel*>("aboutLibraries")
                    ->text()
                    .contains(QStringLiteral("Qt ") + qVersion() + ", GLib 2."));
        QVERIFY(!window->findChild<QLabel*>("aboutIcon")->pixmap().isNull());
    }

    // The organizer, after the windows that use the welcome's categories.
    void oneWindowFollowsEachRequest_data()
    {
        // "focus" is the focused widget, "shown" the current category or the app's name. Without
        // a category the list stays on the one chosen before.
        rows({ "onPane", "item", "focus", "shown" },
             { "category;0;Office;categories;Office",
               "no category;0;;pinnedApps;Office",
               "unknown category;0;Nope;pinnedApps;Office",
               "app;1;beta.desktop;appPinned;Beta",
               "no app;1;;chooseApp;No app chosen",
               "settings;2;;densityNormal;" });
    }
    void oneWindowFollowsEachRequest()
    {
        useStore();
        QFETCH(QString, item);
        QFETCH(QString, focus);
        QFETCH(QString, shown);
        QFETCH(QString, onPane);
        const int pane = onPane.toInt();
        OrganizerWindow* window = openOrganizer(pane, item);
        QVERIFY(window);
        QTRY_VERIFY(QApplication::focusWidget() &&
                    QApplication::focusWidget()->objectName() == focus);
        if (pane == 0)
            QCOMPARE(find<OrganizerListView>("categories")->currentKey(), shown);
        if (pane == 1) {
            QCOMPARE(find<QLabel>("appName")->text(), shown);
            QSignalSpy info(window, &OrganizerWindow::infoRequested);
            find<QAbstractButton>("Get Info")->click();
            QCOMPARE(info.size(), item.isEmpty() ? 0 : 1);
        }
        // A second request while it is open: the same window, on the pane asked for.
        QVERIFY(m_server.send(rq::organizer(OrganizerDlgMode::settings, {})));
        QTRY_COMPARE(window->pane(), 2);
        int windows = 0;
        for (QWidget* each : QApplication::topLevelWidgets())
            windows += each->objectName() == "organizerWindow";
        QCOMPARE(windows, 1);
    }

    void eachChangeShowsEverywhere_data()
    {
        // The control clicked, then the dialog answered ("<dialog> <text>": a name, or the
        // picker's filter; or "confirm"); My Apps after it. The flags each change sets and its
        // saving are tst_servermodel's. The picker's filter matches as the search does: "spread"
        // finds Delta's generic name.
        rows({ "onPane", "answer", "myApps" },
             { "unpin;0;;beta gamma…",
               "pinApps;0;appPicker spread;* delta…",
               "appPinned;1;;alpha gamma…",
               "newCategory;0;newCategoryPrompt Music;*… | Music:",
               "deleteCategory;0;confirm;* | Games: * | Tools:",
               "renameCategory;0;categoryNameDialog Fun;* | Games: * | Fun: delta | Tools:",
               "addApps;0;appPicker eps;* | Games: * | Office: delta epsilon | Tools:",
               "removeApps;0;;* | Games: * | Office: | Tools:",
               "Tools;1;;*… beta",
               "appNewCategory;1;newCategoryPrompt Music;*… | Music: beta",
               "clearRecent;2;;*…" });
    }
    void eachChangeShowsEverywhere()
    {
        useStore();
        QFETCH(QString, answer);
        QFETCH(QString, onPane);
        const int pane = onPane.toInt();
        QVERIFY(openOrganizer(pane, pane == 0 ? "Office" : "beta.desktop"));
        // The buttons act on what is highlighted: each list's first app.
        for (const char* list : { "pinnedApps", "categoryApps" }) {
            if (auto* view = find<OrganizerListView>(list))
                view->selectKeys({ view->listModel()->keyAt(0) });
        }
        find<QAbstractButton>(QTest::currentDataTag())->click();
        if (answer == "confirm") {
            auto* box = InProcessServer::waitForWindow<QMessageBox>("deleteCategoryConfirmation");
            for (QAbstractButton* button : box->buttons())
                if (button->text() == "Delete")
                    button->click();
        } else if (!answer.isEmpty()) {
            QVERIFY(this->answer(answer.section(' ', 0, 0), answer.section(' ', 1)));
        }
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
        // The panes show the change too: Organize App, switched to, a check box per category,
        // ticked where its app is (beta, when opened there); Organize the pins and the chosen
        // category's apps.
        const auto shown = [](const char* list) {
            return find<OrganizerListView>(list)->listModel()->keys().join(' ').remove(".desktop");
        };
        QStringList boxes, expected;
        find<QTabWidget>("organizerPanes")->setCurrentIndex(1);
        for (auto* box : find<QWidget>("organizeAppPane")->findChildren<QCheckBox*>("appCategory"))
            boxes << box->text() + (pane == 1 && box->isChecked() ? ": beta" : ":");
        for (const QString& part : myApps.split(" | ").mid(1))
            expected << part.section(':', 0, 0) +
                            (pane == 1 && part.section(':', 1).split(' ').contains("beta")
                                 ? ": beta"
                                 : ":");
        QCOMPARE(boxes, expected);
        find<QTabWidget>("organizerPanes")->setCurrentIndex(0);
        QCOMPARE(shown("pinnedApps"), myApps.section(" | ", 0, 0));
        QCOMPARE(shown("categoryApps"),
                 myApps.section(find<OrganizerListView>("categories")->currentKey() + ":", 1)
                     .section(" |", 0, 0)
                     .trimmed());
        QCOMPARE(ask(rq::getRecentAppsMenuData).size(), pane == 2 ? 0u : 2u);
    }

    void buttonsActOnTheHighlighted_data()
    {
        // The list, the keys highlighted there (in the picker of "Pin Apps…": chosen, then
        // "filter"ed to others), the buttons of its box then enabled.
        rows({ "list", "highlighted", "enabled" },
             { "no pin;pinnedApps;;pinApps",
               "first pin;pinnedApps;alpha;pinApps unpin pinsDown",
               "middle pin;pinnedApps;beta;pinApps unpin pinsUp pinsDown",
               "last pin;pinnedApps;gamma;pinApps unpin pinsUp",
               "every pin;pinnedApps;alpha beta gamma;pinApps unpin",
               "first category;categories;Games;newCategory renameCategory deleteCategory "
               "categoriesDown",
               "last category;categories;Tools;newCategory renameCategory deleteCategory "
               "categoriesUp",
               "no app of the category;categoryApps;;addApps",
               "the only app of the category;categoryApps;delta;addApps removeApps",
               "no hidden app;hiddenApps;;",
               "a hidden app;hiddenApps;epsilon;unhide",
               "nothing picked;appPickerList;;",
               "picked, then filtered away;appPickerList;delta filter eps;appPickerAction" });
    }
    void buttonsActOnTheHighlighted()
    {
        useStore();
        QFETCH(QString, list);
        QFETCH(QString, highlighted);
        QFETCH(QString, enabled);
        m_server.app().model().setHidden("epsilon.desktop", list == "hiddenApps");
        QVERIFY(openOrganizer(0, "Office"));
        if (list == "appPickerList")
            find<QAbstractButton>("pinApps")->click();
        QWidget* box = list == "appPickerList" ? InProcessServer::waitForWindow("appPicker")
                                               : find<OrganizerListView>(list)->parentWidget();
        auto* view = box->findChild<OrganizerListView*>(list);
        view->selectKeys(highlighted.section(" filter ", 0, 0)
                             .split(' ', Qt::SkipEmptyParts)
                             .replaceInStrings(QRegularExpression("^([a-z]+)$"), "\\1.desktop"));
        if (highlighted.contains(" filter "))
            box->findChild<QLineEdit*>()->setText(highlighted.section(" filter ", 1));
        QStringList found;
        for (auto* button : box->findChildren<QPushButton*>()) {
            if (button->isEnabled() && !button->objectName().isEmpty())
                found << button->objectName();
        }
        QCOMPARE(found.join(' '), enabled);
    }

    // "Clear Recent Apps" can be taken back until the organizer closes.
    void clearingRecentIsUndoneUntilClosed()
    {
        useStore();
        QVERIFY(openOrganizer(2, {}));
        find<QAbstractButton>("clearRecent")->click();
        find<QAbstractButton>("undoClearRecent")->click();
        QCOMPARE(ask(rq::getRecentAppsMenuData).size(), 2u);
        find<QAbstractButton>("clearRecent")->click();
        QVERIFY(find<QAbstractButton>("undoClearRecent"));
        QVERIFY(openOrganizer(2, {})); // closed, then open again
        QVERIFY(!find<QAbstractButton>("undoClearRecent"));
        QCOMPARE(ask(rq::getRecentAppsMenuData).size(), 0u);
    }

    void reorder_data()
    {
        // The item moved from a list to another (the same when empty) by a button, Alt+key, or a
        // drop before a row (-1: after the last) or onto it; My Apps after it.
        rows({ "from", "to", "how", "item", "myApps" },
             { "pin down;pinnedApps;;pinsDown;alpha;beta alpha gamma…",
               "pin Alt+Up;pinnedApps;;Alt+Up;gamma;alpha gamma beta…",
               "top pin up;pinnedApps;;pinsUp;alpha;*…",
               "pin dropped first;pinnedApps;;before 0;gamma;gamma alpha beta…",
               "pin dropped last;pinnedApps;;before -1;alpha;beta gamma alpha…",
               "pin dropped onto itself;pinnedApps;;onto 1;beta;*…",
               "category up;categories;;categoriesUp;Office;* | Office: delta | Games: * | Tools:",
               "category Alt+Down;categories;;Alt+Down;Games;* | Office: delta | Games: * | Tools:",
               "category dropped;categories;;before 0;Tools;* | Tools: | Games: * | Office: delta",
               "member down;categoryApps;;membersDown;beta;* | Games: alpha gamma beta | Office: "
               "delta | Tools:",
               "member dropped;categoryApps;;before 0;gamma;* | Games: gamma alpha beta | Office: "
               "delta | Tools:",
               // Apps from another list: onto a category they are filed there.
               "pin onto a category;pinnedApps;categories;onto 2;alpha;*… alpha",
               "picked onto a category;appPickerList;categories;onto 0;delta;* | Games: * delta | "
               "Office: delta | Tools:",
               "picked between pins;appPickerList;pinnedApps;before 1;epsilon;alpha epsilon beta "
               "gamma…",
               "member into the pins;categoryApps;pinnedApps;before -1;delta;* delta…" });
    }
    void reorder()
    {
        useStore();
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, how);
        QFETCH(QString, item);
        if (to.isEmpty())
            to = from;
        if (item[0] >= 'a')
            item += ".desktop";
        // Games for the moves of its apps; Office, whose only app is not pinned, for the drops.
        QVERIFY(openOrganizer(0, from == to ? "Games" : "Office"));
        if (from == "appPickerList") {
            find<QAbstractButton>("pinApps")->click();
            QVERIFY(InProcessServer::waitForWindow("appPicker"));
        }
        OrganizerListView* view = find<OrganizerListView>(from);
        view->selectKeys({ item });
        if (how.startsWith("Alt+"))
            QTest::keyClick(view, how.endsWith("Up") ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
        else if (how.contains(' '))
            drop(view, find<OrganizerListView>(to), item, how);
        else
            find<QAbstractButton>(how)->click();
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
        // A moved item stays selected, so that it can be moved on.
        if (from == to)
            QCOMPARE(view->selectedKeys(), QStringList{ item });
    }

    void namesAreCheckedInTheDialog_data()
    {
        // The name typed; the reason shown ("taken <name>": that it exists); the categories after.
        // The rule is the same dialog's for every opener: each other opener has a row.
        const QString kept = "Games Office Tools", empty = ";A category needs a name.;" + kept;
        rows({ "opener", "name", "problem", "appcats" },
             { "empty;newCategory;   " + empty,
               "taken;newCategory; gAMES ;taken Games;" + kept,
               "new;newCategory; Music ;;" + kept + " Music",
               "Organize App, taken;appNewCategory;office;taken Office;" + kept,
               "context menu, new;context menu; Music ;;" + kept + " Music",
               "rename, taken;renameCategory;OFFICE;taken Office;" + kept,
               "rename, empty;renameCategory;" + empty,
               "rename, case;renameCategory;GAMES;;GAMES Office Tools" });
    }
    void namesAreCheckedInTheDialog()
    {
        useStore();
        QFETCH(QString, opener);
        QFETCH(QString, name);
        QFETCH(QString, problem);
        QFETCH(QString, appcats);
        if (problem.startsWith("taken"))
            problem = "A category named \u201c" + problem.mid(6) + "\u201d already exists.";
        if (opener == "context menu") {
            QVERIFY(m_server.send(rq::createNewAppcatCxtmnu("beta.desktop")));
        } else {
            const bool app = opener == "appNewCategory";
            QVERIFY(openOrganizer(app ? 1 : 0, app ? "beta.desktop" : "Games"));
            find<QAbstractButton>(opener)->click();
        }
        QPointer<QWidget> dialog = InProcessServer::waitForWindow(
            opener.startsWith("rename") ? "categoryNameDialog" : "newCategoryPrompt");
        QVERIFY(dialog);
        auto* field = dialog->findChild<QLineEdit*>();
        field->setText(name);
        QTest::keyClick(field, Qt::Key_Return);
        // Read before the event loop runs: an accepted dialog is deleted then.
        auto* said = dialog->findChild<QLabel*>("categoryNameProblem");
        QCOMPARE(said->isVisible() ? said->text() : QString(), problem);
        QCOMPARE(field->accessibleDescription(), problem);
        QCOMPARE(dialog->isVisible(), !problem.isEmpty());
        // A category made in the Organize pane is chosen there.
        if (opener == "newCategory" && problem.isEmpty())
            QCOMPARE(find<OrganizerListView>("categories")->currentKey(), "Music");
        std::vector<std::string> expected;
        for (const QString& each : appcats.split(' '))
            expected.push_back(each.toStdString());
        QCOMPARE(ask(rq::getMyAppsMenuData)[field::appcats], Json(expected));
        if (!problem.isEmpty()) {
            // Typing again takes the reason away; Escape gives up.
            QTest::keyClicks(field, "x");
            QVERIFY(!said->isVisible() && field->accessibleDescription().isEmpty());
            QTest::keyClick(field, Qt::Key_Escape);
            QVERIFY(!dialog->isVisible());
        }
    }

    void preferencesRoundTrip_data()
    {
        // The control, labelled as the row's name; its key; the value set by Space; the key that
        // sets it back.
        rows({ "control", "key", "value", "back" },
             { "Compact;densityCompact;MenuDensity;1;Left",
               "Animation effects;animationFx;AnimationFx;false;",
               "Remember expanded categories;saveExpAppCats;SaveExpAppCats;false;",
               "Remember last menu;saveLastMenu;SaveLastMenu;false;",
               "Only one category open at a time;oneExpAppCat;OneExpAppCat;true;" });
    }
    void preferencesRoundTrip()
    {
        useStore();
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, back);
        const Json set = Json::parse(value.toStdString());
        QVERIFY(openOrganizer(2, {}));
        auto* button = find<QAbstractButton>(control);
        QCOMPARE(button->text(), QTest::currentDataTag());
        button->setFocus();
        QTRY_VERIFY(button->hasFocus());
        const Json before = ask(rq::getUserPrefs);
        // Changed by keys, as a keyboard user does, then set back.
        for (const auto& [pressed, value] : { std::pair(int(Qt::Key_Space), set),
                                              { int(back == "Left" ? Qt::Key_Left : Qt::Key_Space),
                                                before[key.toStdString()] } }) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(pressed));
            Json expected = before;
            expected[key.toStdString()] = value;
            QCOMPARE(ask(rq::getUserPrefs), expected);
        }
        // Shown as stored when the pane opens.
        m_server.app().model().setPrefs({ 1, false, false, false, true });
        QVERIFY(openOrganizer(2, {}));
        QCOMPARE(button->isChecked(), set.is_boolean() ? set.get<bool>() : true);
    }

    void startAtLogin()
    {
        useStore();
        const AutostartEntry entry;
        QVERIFY(entry.path().startsWith(m_desktop.configHome() + "/autostart/"));
        // Written valid, the program quoted when it must be.
        const auto valid = [&] {
            const auto check = runChild("desktop-file-validate", { entry.path() });
            return check.exitedWith(0) && check.out.isEmpty();
        };
        const QString odd = m_desktop.root() + "/a b/po\\m\"v$r"; // a program it may run
        QVERIFY(TestDesktop::write(odd, "#!/bin/sh\n", true));
        QVERIFY(entry.setEnabled(true, odd) && valid());
        QVERIFY(openOrganizer(2, {}));
        auto* box = find<QCheckBox>("Start Pomvar at login");
        QVERIFY(box->isChecked()); // the entry's real state
        box->click();
        QVERIFY(!QFile::exists(entry.path()) && !box->isChecked());
        box->click();
        QVERIFY(box->isChecked() && entry.isEnabled() && valid());
        QByteArray text = TestDesktop::read(entry.path());
        QVERIFY(
            text.contains(QByteArray("\nExec=" + AutostartEntry::installedFrontEnd().toUtf8())));
        // Turned off the way desktops do it, then removed.
        text.replace("X-GNOME-Autostart-enabled=true", "X-GNOME-Autostart-enabled=false");
        QVERIFY(TestDesktop::write(entry.path(), text) && !entry.isEnabled());
        box->click();
        QVERIFY(!QFile::exists(entry.path()) && entry.setEnabled(false));
    }

    void theInstalledVersion_data()
    {
        // The version file (none when empty); only the first is newer than this build.
        rows({ "installed" },
             { "newer;99.1.0\n",
               QString("the same;") + pomvar::version().data(),
               "older;0.0.1\n",
               "unreadable;next\n",
               "none;" });
    }
    void theInstalledVersion()
    {
        QFETCH(QString, installed);
        const bool newer = QTest::currentDataTag() == QByteArray("newer");
        QFile::remove(versionFile());
        QVERIFY(installed.isEmpty() || TestDesktop::write(versionFile(), installed.toUtf8()));
        JCOMPARE(ask(rq::checkUpdateAvailable)["isUpdateAvailable"], newer);
        JCOMPARE(ask(rq::getAppUpdateStatus)["status"], newer ? "updateAvailable" : "noUpdate");
        QWidget* window = openUpdates();
        QVERIFY(window);
        QCOMPARE(text(window),
                 newer ? QString("Pomvar 99.1.0 is installed. Restart to use it.")
                       : QString("Pomvar %1 is up to date.").arg(pomvar::version().data()));
        QCOMPARE(window->findChild<QPushButton*>("restartPomvar")->isVisible(), newer);
        // Nothing newer: nothing to restart into.
        Updates updates(options().installDir, QString::fromUtf8(pomvar::version()));
        updates.confirm();
        QCOMPARE(updates.isConfirmed(), newer);
    }

    void aChangedInstallFolderIsNoticed()
    {
        QWidget* window = openUpdates();
        QVERIFY(window);
        // As a package manager does: the new file beside, then renamed over the old one.
        QVERIFY(TestDesktop::write(versionFile() + ".new", "99.2.0\n"));
        QVERIFY(QFile::rename(versionFile() + ".new", versionFile()));
        QTRY_COMPARE(text(window), "Pomvar 99.2.0 is installed. Restart to use it.");
        // And as a hand edit does: written in place.
        QFile file(versionFile());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write("99.3.0\n"));
        file.close();
        QTRY_COMPARE(text(window), "Pomvar 99.3.0 is installed. Restart to use it.");
    }

    // The update's restart and the autostart entry run only the installed front end.
    void onlyTheInstalledFrontEndIsStarted_data()
    {
        rows({ "kind" },
             { "a file of the server's owner, writable by it alone;file",
               "writable by its group;group",
               "writable by others;others",
               "another user's;owner",
               "a symbolic link to the program;link",
               "a folder;folder",
               "missing;missing" });
    }
    void onlyTheInstalledFrontEndIsStarted()
    {
        QFETCH(QString, kind);
        if (kind == "owner" && ::getuid() != 0)
            QSKIP("needs root to give a file to another user");
        QTemporaryDir prefix;
        const QString program = prefix.filePath("bin/pomvar"), real = prefix.filePath("real");
        QVERIFY(TestDesktop::write(real, "#!/bin/sh\ntouch \"$0.started\"\n", true));
        QVERIFY(QDir().mkpath(prefix.filePath("bin")) &&
                QDir().mkpath(prefix.filePath("libexec/pomvar")));
        const auto mode = QFile::permissions(real);
        if (kind == "link")
            QVERIFY(QFile::link(real, program));
        else if (kind == "folder")
            QVERIFY(QDir().mkpath(program));
        else if (kind != "missing")
            QVERIFY(QFile::copy(real, program) &&
                    QFile::setPermissions(program,
                                          mode | (kind == "group"    ? QFile::WriteGroup
                                                  : kind == "others" ? QFile::WriteOther
                                                                     : QFile::Permissions())));
        QVERIFY(kind != "owner" || ::chown(QFile::encodeName(program), 65534, 65534) == 0);
        const bool allowed = kind == "file";
        Updates updates(prefix.filePath("libexec/pomvar"), "0.0.1");
        QString why;
        QCOMPARE(updates.startInstalledFrontEnd(&why), allowed);
        QCOMPARE(why.isEmpty(), allowed);
        const AutostartEntry entry(prefix.filePath("autostart/pomvar.desktop"));
        QCOMPARE(entry.setEnabled(true, program), allowed);
        QCOMPARE(QFile::exists(entry.path()), allowed);
        if (allowed)
            QTRY_VERIFY(QFile::exists(program + ".started"));
    }

    void waitingForTheFrontEnd_data()
    {
        // "running": a process of the front end's program; "stale": the PID file names another
        // program; "quits": it removes its PID file and ends while waited for; "noPidFile": it
        // wrote none, and is known as the one that started us.
        rows({ "kind" },
             { "none;",
               "a stale PID file;stale",
               "quits at its poll;running quits",
               "not polling: SIGTERM;running",
               "no PID file: SIGTERM;running noPidFile" });
    }
    void waitingForTheFrontEnd()
    {
        QFETCH(QString, kind);
        const bool running = kind.contains("running"), stale = kind == "stale",
                   quitsItself = kind.contains("quits"), noPidFile = kind.contains("noPidFile");
        QTemporaryDir dir;
        const QString program = dir.filePath("bin/pomvar"), pidFile = dir.filePath("pomvar.pid");
        QVERIFY(QDir().mkpath(dir.filePath("bin")) && QFile::copy("/bin/sleep", program));
        QProcess frontEnd;
        if (running) {
            frontEnd.start(program, { "60" });
            QVERIFY(frontEnd.waitForStarted());
        }
        const qint64 pid = stale ? QCoreApplication::applicationPid() : frontEnd.processId();
        QVERIFY(!(running || stale) || noPidFile ||
                TestDesktop::write(pidFile, QByteArray::number(pid)));
        // One that quits by itself does so within the grace time: it is never asked to.
        FrontEndExit exit(pidFile, program, quitsItself ? FrontEndExit::kGraceMs : 300);
        if (noPidFile)
            exit.setStartedBy(pid_t(pid));
        QSignalSpy gone(&exit, &FrontEndExit::gone);
        exit.wait();
        if (quitsItself) {
            QVERIFY(gone.isEmpty());
            QVERIFY(QFile::remove(pidFile));
            frontEnd.kill();
        }
        QTRY_COMPARE(gone.size(), 1);
        QVERIFY(!QFile::exists(pidFile));
        if (running) {
            QTRY_COMPARE(frontEnd.state(), QProcess::NotRunning);
            QCOMPARE(frontEnd.exitCode(), quitsItself ? SIGKILL : SIGTERM); // the signal
        }
    }

    // Last: the server closes its port.
    void restartIntoTheInstalledFrontEnd()
    {
        QWidget* window = openUpdates();
        QVERIFY(window && window->findChild<QPushButton*>("restartPomvar")->isVisible());
        QTest::keyClick(window, Qt::Key_Return); // "Restart Pomvar", the default
        // No front end runs: the installed one is started at once, after the port was closed.
        QTRY_VERIFY(QFile::exists(m_prefix.filePath("bin/pomvar.started")));
        SrvClient client;
        QVERIFY(!client.connectTo(m_server.port()));
        const auto store = Json::parse(TestDesktop::read(m_desktop.storePath()).data());
        JCOMPARE(store["updatedFrom"], std::string(pomvar::version()));
        // The restarted server says once that the update is finished.
        InProcessServer restarted;
        QVERIFY(restarted.start(options()));
        for (const bool finished : { true, false })
            JCOMPARE(restarted.ask(rq::plain(rq::getAppStatus)),
                     (Json{ { "ready", true }, { "updateFinished", finished } }));
        JCOMPARE(Json::parse(TestDesktop::read(m_desktop.storePath()).data())["pins"],
                 store["pins"]);
    }

private:
    // The organizer's tests start on kStore.
    void useStore()
    {
        m_server.app().model().setStore(*Store::fromJson(Json::parse(kStore)));
        ask(rq::getMyAppsMenuData);
    }

    // Sends the request for that pane and item; the window once it shows them.
    OrganizerWindow* openOrganizer(int pane, const QString& item)
    {
        auto* window = openWindow<OrganizerWindow>(
            rq::organizer(OrganizerDlgMode(pane), item.toStdString()), "organizer", "", true);
        return window && window->pane() == pane ? window : nullptr;
    }

    Json ask(std::string_view id) const { return m_server.ask(rq::plain(id)); }

    // Adds the text columns and a row per text: its tag and cells parted by ';'. In My Apps, "*"
    // stands for "alpha beta gamma" and "…" for kStore's categories.
    static void rows(std::initializer_list<const char*> columns,
                     std::initializer_list<QString> texts)
    {
        for (const char* column : columns)
            QTest::addColumn<QString>(column);
        for (QString text : texts) {
            text.replace("…", " | Games: * | Office: delta | Tools:")
                .replace("*", "alpha beta gamma");
            const QStringList cells = text.split(';');
            QTestData& row = QTest::newRow(cells[0].toUtf8().constData());
            for (const QString& cell : cells.mid(1))
                row << cell;
        }
    }

    // Drops `item` of `from` onto `to` where a drag would end: "before <row>" (-1: after the
    // last) or "onto <row>".
    static void drop(OrganizerListView* from,
                     OrganizerListView* to,
                     const QString& item,
                     const QString& how)
    {
        const int row = how.section(' ', 1).toInt();
        const bool onto = how.startsWith("onto");
        OrganizerListModel* source = from->listModel();
        std::unique_ptr<QMimeData> data(source->mimeData({ source->index(source->rowOf(item)) }));
        const QModelIndex parent = onto ? to->listModel()->index(row) : QModelIndex();
        QVERIFY(
            to->listModel()->dropMimeData(data.get(), Qt::MoveAction, onto ? -1 : row, 0, parent));
    }

    // Types `text` into the open dialog of that object name and accepts it by keys: a name, or
    // the picker's filter, which must leave one app, then chosen in its list.
    static bool answer(const QString& name, const QString& text)
    {
        QWidget* dialog = InProcessServer::waitForWindow(name);
        auto* field = dialog ? dialog->findChild<QLineEdit*>() : nullptr;
        if (!field)
            return false;
        field->selectAll();
        QTest::keyClicks(field, text);
        QTest::keyClick(field, name == "appPicker" ? Qt::Key_Down : Qt::Key_Return);
        if (auto* list = dialog->findChild<OrganizerListView*>()) {
            if (list->listModel()->rowCount() != 1 ||
                !QTest::qWaitFor([&] { return list->hasFocus(); }))
                return false;
            QTest::keyClick(list, Qt::Key_Return);
        }
        return !dialog->isVisible();
    }

    // The My Apps payload in short: "pins | Category: apps | …", app keys without ".desktop".
    QString summary() const
    {
        const Json payload = ask(rq::getMyAppsMenuData);
        const auto names = [](const Json& apps) {
            QStringList keys;
            for (const Json& app : apps)
                keys << QString::fromStdString(app[field::appkey]).remove(".desktop");
            return keys.join(' ');
        };
        QStringList parts{ names(payload[field::pinnedapps]) };
        for (const Json& category : payload[field::appcats]) {
            const QString apps = names(payload[field::appcatapps][category.get<std::string>()]);
            parts << QString(QString::fromStdString(category) + ": " + apps).trimmed();
        }
        return parts.join(" | ");
    }

    ServerOptions options() const
    {
        ServerOptions options;
        options.installDir = m_prefix.filePath("libexec/pomvar");
        QDir().mkpath(options.installDir);
        return options;
    }
    QString versionFile() const
    {
        return m_prefix.filePath("libexec/pomvar/") + pomvar::paths::versionFile;
    }
    QWidget* openUpdates()
    {
        return openWindow<QWidget>(rq::plain(rq::checkUpdates), "updates", "Pomvar Updates", true);
    }
    static QString text(QWidget* window)
    {
        return window->findChild<QLabel*>("updatesText")->text();
    }

    // Sends "app-search" over the wire; the window's field once it is shown and focused.
    QLineEdit* openSearch()
    {
        auto* window = openWindow<QWidget>(rq::plain(rq::appSearch), "search", "");
        return window ? window->findChild<QLineEdit*>() : nullptr;
    }

    // Everything sent on the buses so far has been delivered and handled: the server's calls
    // reached the providers, the providers' answers reached the server.
    void settle()
    {
        for (int round = 0; round < 2; ++round) {
            for (const QDBusConnection& bus : { QDBusConnection::sessionBus(), m_providers })
                bus.interface()->isServiceRegistered("org.pomvar.Test.quick");
            QCoreApplication::processEvents();
        }
    }

    static QStringList rowNames(QListView* list)
    {
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            names << list->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
        return names;
    }

    // How often the three menus and the search window's results for "edit" name the editor.
    int editorShown()
    {
        std::string named;
        for (const auto id :
             { rq::getAllAppsMenuData, rq::getRecentAppsMenuData, rq::getMyAppsMenuData })
            named += ask(id).dump();
        QLineEdit* field = openSearch();
        field->setText("edit");
        const QAbstractItemModel* results = field->window()->findChild<QListView*>()->model();
        for (int row = 0; row < results->rowCount(); ++row)
            named += results->index(row, 0).data(SearchResults::KeyRole).toString().toStdString();
        field->window()->close();
        return int(QString::fromStdString(named).count("editor.desktop"));
    }

    // The widgets Tab goes through, from the focused one.
    static QStringList tabStops()
    {
        QStringList stops;
        for (QWidget* at = QApplication::focusWidget(); at && !stops.contains(at->objectName());
             at = QApplication::focusWidget()) {
            stops << at->objectName();
            QTest::keyClick(at, Qt::Key_Tab);
        }
        return stops;
    }

    // Sends the request; the window once it shows that title (any when empty) and is active, so
    // that what follows is not mixed with the refresh an activation brings. With `fresh`, the
    // windows are closed first, so that its showing tells that the request was acted on.
    template <typename Window>
    Window* openWindow(const std::string& body,
                       const char* kind,
                       const QString& title,
                       bool fresh = false)
    {
        if (fresh)
            for (QWidget* window : QApplication::topLevelWidgets())
                window->close();
        if (!m_server.send(body))
            return nullptr;
        auto* window = InProcessServer::waitForWindow<Window>(QString::fromLatin1(kind) + "Window");
        return window && QTest::qWaitFor([&] {
                   return title.isEmpty() || window->windowTitle() == title;
               }) && QTest::qWaitForWindowActive(window)
                   ? window
                   : nullptr;
    }

    TestDesktop m_desktop;
    QTemporaryDir m_prefix;
    QString m_opener, m_marker;
    QUrl m_opened;
    SessionBus m_bus;
    QDBusConnection m_providers{ QString() };
    TestProvider m_quick{ "quick", 0 }, m_late{ "late", 400 }, m_never{ "never", -1 };
    InProcessServer m_server;
};

QTEST_MAIN(TestServerWindows)
#include "tst_serverwindows.moc"
