// The organizer in a server run in-process against real desktop entries, driven through its
// widgets while what the front end would read is asked over the wire: one window following each
// request, each change's flag set and then cleared, the store on disk after every click, the
// payload's order after reordering by buttons, keys and drops, a rename delivered once, the name
// rule told inside the dialog, the five preferences and the autostart entry.
#include "AutostartEntry.h"
#include "ChildProcess.h"
#include "InProcessServer.h"
#include "OrganizerListModel.h"
#include "OrganizerListView.h"
#include "OrganizerWindow.h"
#include "StoreFile.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QtTest>

using namespace pomvar;
using namespace pomvar::srv;
using namespace pomvar::test;
using Json = nlohmann::json;

namespace {

const char* const kStore = R"({"version": 1,
    "pins": ["alpha.desktop", "beta.desktop", "gamma.desktop"],
    "categories": [{"name": "Games", "apps": ["alpha.desktop", "beta.desktop", "gamma.desktop"]},
                   {"name": "Office", "apps": ["delta.desktop"]}, {"name": "Tools"}],
    "recent": ["alpha.desktop", "beta.desktop"]})";
// kStore's My Apps in short, as summary() gives it.
const QString kMyApps = "alpha beta gamma | Games: alpha beta gamma | Office: delta | Tools:";

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

} // namespace

class TestOrganizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name : { "Alpha", "Beta", "Gamma", "Delta", "Epsilon" }) {
            const QString id = QString::fromLatin1(name).toLower();
            QVERIFY(TestDesktop::writeEntry(
                m_desktop.systemData(),
                id + ".desktop",
                QByteArray("Name=") + name +
                    "\nExec=true\nGenericName=" + (id == "delta" ? "Spreadsheet" : "Thing")));
        }
        InProcessServer::useDesktop(m_desktop);
        QVERIFY(m_server.start());
    }

    void init()
    {
        m_server.app().model().setStore(*Store::fromJson(Json::parse(kStore)));
        m_server.ask(request::plain(request::getMenuDataModifiedStatus));
        m_server.ask(request::plain(request::getMyAppsMenuData));
    }

    void oneWindowFollowsEachRequest_data()
    {
        QTest::addColumn<int>("pane");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("focus"); // the focused widget
        QTest::addColumn<QString>("shown"); // the current category, or the app's name
        // Without a category the list stays on the one chosen before.
        for (const auto& [tag, pane, item, focus, shown] :
             { std::tuple("category", 0, "Office", "categories", "Office"),
               { "no category", 0, "", "pinnedApps", "Office" },
               { "unknown category", 0, "Nope", "pinnedApps", "Office" },
               { "app", 1, "beta.desktop", "appPinned", "Beta" },
               { "no app", 1, "", "chooseApp", "No app chosen" },
               { "settings", 2, "", "densityNormal", "" } })
            QTest::newRow(tag) << pane << item << focus << shown;
    }
    void oneWindowFollowsEachRequest()
    {
        QFETCH(int, pane);
        QFETCH(QString, item);
        QFETCH(QString, focus);
        QFETCH(QString, shown);
        OrganizerWindow* window = open(pane, item);
        QVERIFY(window);
        QCOMPARE(window->windowTitle(), "Pomvar Organizer");
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
        QVERIFY(m_server.send(request::organizer(OrganizerDlgMode::settings, {})));
        QTRY_COMPARE(window->pane(), 2);
        int windows = 0;
        for (QWidget* each : QApplication::topLevelWidgets())
            windows += each->objectName() == "organizerWindow";
        QCOMPARE(windows, 1);
    }

    void eachChangeSetsItsFlag_data()
    {
        QTest::addColumn<int>("pane");
        QTest::addColumn<QString>("control"); // clicked, then the dialog answered
        QTest::addColumn<QString>("answer");  // "pick <filter>", "name <name>" or "confirm"
        QTest::addColumn<QString>("flag");
        QTest::addColumn<QString>("myApps");
        const QString pinned = "pinnedAppsModified", appcats = "appcatsModified";
        const QString rest = " | Games: alpha beta gamma | Office: delta | Tools:";
        // The picker's filter matches as the search does: "spread" finds Delta's generic name.
        for (const auto& [pane, control, answer, flag, myApps] :
             { std::tuple(0, "unpin", "", pinned, QString("beta gamma" + rest)),
               { 0, "pinApps", "pick spread", pinned, "alpha beta gamma delta" + rest },
               { 1, "appPinned", "", pinned, "alpha gamma" + rest },
               { 0, "newCategory", "name Music", appcats, kMyApps + " | Music:" },
               { 0,
                 "deleteCategory",
                 "confirm",
                 appcats,
                 "alpha beta gamma | Games: alpha beta gamma | Tools:" },
               { 0,
                 "addApps",
                 "pick eps",
                 appcats,
                 "alpha beta gamma | Games: alpha beta gamma | Office: delta epsilon | Tools:" },
               { 0,
                 "removeApps",
                 "",
                 appcats,
                 "alpha beta gamma | Games: alpha beta gamma | Office: | Tools:" },
               { 1, "Tools", "", appcats, kMyApps + " beta" },
               { 1, "appNewCategory", "name Music", appcats, kMyApps + " | Music: beta" },
               { 2, "clearRecent", "", "recentAppsModified", kMyApps },
               { 2, "animationFx", "", "", kMyApps } })
            QTest::newRow(control) << pane << control << answer << flag << myApps;
    }
    void eachChangeSetsItsFlag()
    {
        QFETCH(int, pane);
        QFETCH(QString, control);
        QFETCH(QString, answer);
        QVERIFY(open(pane, pane == 0 ? "Office" : "beta.desktop"));
        find<QAbstractButton>(control)->click();
        const QString value = answer.section(' ', 1);
        if (answer.startsWith("pick"))
            QVERIFY(pick(value));
        if (answer.startsWith("name"))
            QVERIFY(this->answer("New Category", value));
        if (answer == "confirm") {
            auto* box = qobject_cast<QMessageBox*>(
                InProcessServer::waitForWindow("deleteCategoryConfirmation"));
            QCOMPARE(box->informativeText(), "The apps in it stay installed.");
            for (QAbstractButton* button : box->buttons()) {
                if (button->text() == "Delete")
                    button->click();
            }
        }
        QFETCH(QString, flag);
        const Json flags = ask(request::getMenuDataModifiedStatus);
        for (const char* each : { MenuDataStatus::kAppFolderModified,
                                  MenuDataStatus::kRecentAppsModified,
                                  MenuDataStatus::kAppcatsModified,
                                  MenuDataStatus::kPinnedAppsModified }) {
            QVERIFY2(flags.at(each) == (flag == each), each);
            QVERIFY2(ask(request::getMenuDataModifiedStatus).at(each) == false, each);
        }
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
        // The panes show the change too: Organize App a check box per category, ticked where
        // the app is; Organize, switched to, the pins and the chosen category's apps.
        const auto shown = [](const char* list) {
            return find<OrganizerListView>(list)->listModel()->keys().join(' ').remove(".desktop");
        };
        if (pane == 1) {
            QStringList boxes, expected;
            for (auto* box :
                 find<QWidget>("organizeAppPane")->findChildren<QCheckBox*>("appCategory"))
                boxes << box->text() + (box->isChecked() ? ": beta" : ":");
            for (const QString& part : myApps.split(" | ").mid(1))
                expected << part.section(':', 0, 0) +
                                (part.section(':', 1).split(' ').contains("beta") ? ": beta" : ":");
            QCOMPARE(boxes, expected);
        }
        find<QTabWidget>("organizerPanes")->setCurrentIndex(0);
        QCOMPARE(shown("pinnedApps"), myApps.section(" | ", 0, 0));
        QCOMPARE(shown("categoryApps"),
                 myApps.section(find<OrganizerListView>("categories")->currentKey() + ":", 1)
                     .section(" |", 0, 0)
                     .trimmed());
        QCOMPARE(ask(request::getRecentAppsMenuData).size(), flag.startsWith("recent") ? 0u : 2u);
        // Saved before the click returned: a server killed now loses nothing.
        QVERIFY(StoreFile(m_desktop.storePath()).load() == m_server.app().model().store());
    }

    void reorder_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("how"); // a button, Alt+key, or a drop before a row or onto it
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("myApps");
        const QString pins = "pinnedApps", categories = "categories", members = "categoryApps";
        const QString rest = " | Games: alpha beta gamma | Office: delta | Tools:";
        const QString officeFirst =
            "alpha beta gamma | Office: delta | Games: alpha beta gamma | Tools:";
        for (const auto& [tag, from, to, how, item, myApps] :
             { std::tuple(
                   "pin down", pins, pins, "pinsDown", "alpha", QString("beta alpha gamma" + rest)),
               { "pin Alt+Up", pins, pins, "Alt+Up", "gamma", "alpha gamma beta" + rest },
               { "top pin up", pins, pins, "pinsUp", "alpha", kMyApps },
               { "pin dropped first", pins, pins, "before 0", "gamma", "gamma alpha beta" + rest },
               { "pin dropped last", pins, pins, "before -1", "alpha", "beta gamma alpha" + rest },
               { "pin dropped onto itself", pins, pins, "onto 1", "beta", kMyApps },
               { "category up", categories, categories, "categoriesUp", "Office", officeFirst },
               { "category Alt+Down", categories, categories, "Alt+Down", "Games", officeFirst },
               { "category dropped",
                 categories,
                 categories,
                 "before 0",
                 "Tools",
                 "alpha beta gamma | Tools: | Games: alpha beta gamma | Office: delta" },
               { "member down",
                 members,
                 members,
                 "membersDown",
                 "beta",
                 "alpha beta gamma | Games: alpha gamma beta | Office: delta | Tools:" },
               { "member dropped",
                 members,
                 members,
                 "before 0",
                 "gamma",
                 "alpha beta gamma | Games: gamma alpha beta | Office: delta | Tools:" },
               // Apps from another list: onto a category they are filed there.
               { "pin onto a category", pins, categories, "onto 2", "alpha", kMyApps + " alpha" },
               { "picked onto a category",
                 "appPickerList",
                 categories,
                 "onto 0",
                 "delta",
                 "alpha beta gamma | Games: alpha beta gamma delta | Office: delta | Tools:" },
               { "picked between pins",
                 "appPickerList",
                 pins,
                 "before 1",
                 "epsilon",
                 "alpha epsilon beta gamma" + rest },
               { "member into the pins",
                 members,
                 pins,
                 "before -1",
                 "delta",
                 "alpha beta gamma delta" + rest } })
            QTest::newRow(tag) << from << to << how
                               << (item + QString(item[0] >= 'a' ? ".desktop" : "")) << myApps;
    }
    void reorder()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, how);
        QFETCH(QString, item);
        // Games for the moves of its apps; Office, whose only app is not pinned, for the drops.
        QVERIFY(open(0, from == to ? "Games" : "Office"));
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

    void renameIsDeliveredOnce()
    {
        QVERIFY(open(0, "Games"));
        auto* categories = find<OrganizerListView>("categories");
        QTRY_VERIFY(categories->hasFocus());
        QTest::keyClick(categories, Qt::Key_F2);
        QVERIFY(answer("Rename Category", "  Fun  "));
        const Json payload = ask(request::getMyAppsMenuData);
        QCOMPARE(payload[field::renamedAppcats],
                 Json::parse(R"([{"old": "Games", "new": "Fun"}])"));
        QCOMPARE(payload[field::appcats], Json::parse(R"(["Fun", "Office", "Tools"])"));
        QCOMPARE(ask(request::getMenuDataModifiedStatus)[MenuDataStatus::kAppcatsModified], true);
        QCOMPARE(ask(request::getMyAppsMenuData)[field::renamedAppcats], Json::array());
        QCOMPARE(categories->currentKey(), "Fun");
        // Organize App names its check boxes anew.
        find<QTabWidget>("organizerPanes")->setCurrentIndex(1);
        QStringList boxes;
        for (auto* box : find<QWidget>("organizeAppPane")->findChildren<QCheckBox*>("appCategory"))
            boxes << box->text();
        QCOMPARE(boxes, QStringList({ "Fun", "Office", "Tools" }));
    }

    void namesAreCheckedInTheDialog_data()
    {
        QTest::addColumn<QString>("opener");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("appcats");
        const QString taken = "A category named \u201c%1\u201d already exists.";
        const QString empty = "A category needs a name.";
        for (const char* opener : { "newCategory", "appNewCategory", "context menu" }) {
            QTest::addRow("%s, empty", opener) << opener << "   " << empty << "Games Office Tools";
            QTest::addRow("%s, taken", opener)
                << opener << " gAMES " << taken.arg("Games") << "Games Office Tools";
            QTest::addRow("%s, new", opener) << opener << " Music "
                                             << ""
                                             << "Games Office Tools Music";
        }
        QTest::newRow("rename, taken") << "renameCategory"
                                       << "OFFICE" << taken.arg("Office") << "Games Office Tools";
        QTest::newRow("rename, empty") << "renameCategory"
                                       << "" << empty << "Games Office Tools";
        QTest::newRow("rename, case") << "renameCategory"
                                      << "GAMES"
                                      << ""
                                      << "GAMES Office Tools";
    }
    void namesAreCheckedInTheDialog()
    {
        QFETCH(QString, opener);
        QFETCH(QString, name);
        QFETCH(QString, problem);
        QFETCH(QString, appcats);
        if (opener == "context menu") {
            QVERIFY(m_server.send(request::createNewAppcatCxtmnu("beta.desktop")));
        } else {
            const bool app = opener == "appNewCategory";
            QVERIFY(open(app ? 1 : 0, app ? "beta.desktop" : "Games"));
            find<QAbstractButton>(opener)->click();
        }
        QPointer<QWidget> dialog = InProcessServer::waitForWindow(
            opener == "context menu" ? "newCategoryPrompt" : "categoryNameDialog");
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
        QCOMPARE(ask(request::getMyAppsMenuData)[field::appcats], Json(expected));
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
        QTest::addColumn<QString>("control"); // its label is the row's name
        QTest::addColumn<QString>("key");
        QTest::addColumn<Json>("set");
        QTest::addColumn<int>("back"); // the key that sets it back
        for (const auto& [tag, control, key, set, back] :
             { std::tuple(
                   "Compact", "densityCompact", UserPrefs::kMenuDensity, Json(1), Qt::Key_Left),
               { "Animation effects",
                 "animationFx",
                 UserPrefs::kAnimationFx,
                 Json(false),
                 Qt::Key_Space },
               { "Remember expanded categories",
                 "saveExpAppCats",
                 UserPrefs::kSaveExpAppCats,
                 Json(false),
                 Qt::Key_Space },
               { "Remember last menu",
                 "saveLastMenu",
                 UserPrefs::kSaveLastMenu,
                 Json(false),
                 Qt::Key_Space },
               { "Only one category open at a time",
                 "oneExpAppCat",
                 UserPrefs::kOneExpAppCat,
                 Json(true),
                 Qt::Key_Space } })
            QTest::newRow(tag) << control << key << set << int(back);
    }
    void preferencesRoundTrip()
    {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(Json, set);
        QFETCH(int, back);
        QVERIFY(open(2, {}));
        auto* button = find<QAbstractButton>(control);
        QCOMPARE(button->text(), QTest::currentDataTag());
        button->setFocus();
        QTRY_VERIFY(button->hasFocus());
        const Json before = ask(request::getUserPrefs);
        // Changed by keys, as a keyboard user does, then set back.
        for (const auto& [pressed, value] :
             { std::pair(int(Qt::Key_Space), set), { back, before[key.toStdString()] } }) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(pressed));
            Json expected = before;
            expected[key.toStdString()] = value;
            QCOMPARE(ask(request::getUserPrefs), expected);
        }
        // Shown as stored when the pane opens.
        m_server.app().model().setPrefs({ 1, false, false, false, true });
        QVERIFY(open(2, {}));
        QCOMPARE(button->isChecked(), set.is_boolean() ? set.get<bool>() : true);
    }

    void startAtLogin()
    {
        const AutostartEntry entry;
        QVERIFY(entry.path().startsWith(m_desktop.configHome() + "/autostart/"));
        QVERIFY(entry.setEnabled(true));
        QVERIFY(open(2, {}));
        auto* box = find<QCheckBox>("Start Pomvar at login");
        QVERIFY(box->isChecked()); // the entry's real state
        box->click();
        QVERIFY(!QFile::exists(entry.path()) && !box->isChecked());
        box->click();
        QVERIFY(box->isChecked() && entry.isEnabled());
        const QByteArray text = TestDesktop::read(entry.path());
        QVERIFY(
            text.contains(QByteArray("\nExec=" + AutostartEntry::installedFrontEnd().toUtf8())));
        const auto check = runChild("desktop-file-validate", { entry.path() });
        QVERIFY2(check.exitedWith(0) && check.out.isEmpty(), check.out.constData());
        box->click();
        QVERIFY(!QFile::exists(entry.path()));
    }

private:
    // Sends the request for that pane and item; the window once it shows them. An open window
    // is closed first, so that its showing again tells that the request was acted on.
    OrganizerWindow* open(int pane, const QString& item)
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            window->close();
        if (!m_server.send(request::organizer(OrganizerDlgMode(pane), item.toStdString())))
            return nullptr;
        auto* window = InProcessServer::waitForWindow<OrganizerWindow>("organizerWindow");
        // Active, so that what follows is not mixed with the refresh an activation brings.
        return window && window->pane() == pane && QTest::qWaitForWindowActive(window) ? window
                                                                                       : nullptr;
    }

    Json ask(std::string_view id) const { return m_server.ask(request::plain(id)); }

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

    // Types the name into the open name dialog of that title and accepts it.
    static bool answer(const QString& title, const QString& name)
    {
        QWidget* dialog = InProcessServer::waitForWindow("categoryNameDialog");
        if (!dialog || dialog->windowTitle() != title)
            return false;
        auto* field = dialog->findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
        return !dialog->isVisible();
    }

    // Filters the open picker down to one row and chooses it by keys.
    static bool pick(const QString& filter)
    {
        QWidget* picker = InProcessServer::waitForWindow("appPicker");
        auto* field = picker ? picker->findChild<QLineEdit*>() : nullptr;
        auto* list = picker ? picker->findChild<OrganizerListView*>() : nullptr;
        if (!field)
            return false;
        QTest::keyClicks(field, filter);
        QTest::keyClick(field, Qt::Key_Down);
        if (list->listModel()->rowCount() != 1 ||
            !QTest::qWaitFor([&] { return list->hasFocus(); }))
            return false;
        QTest::keyClick(list, Qt::Key_Return);
        return !picker->isVisible();
    }

    // The My Apps payload in short: "pins | Category: apps | …", app keys without ".desktop".
    QString summary() const
    {
        const Json payload = ask(request::getMyAppsMenuData);
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

    TestDesktop m_desktop;
    InProcessServer m_server;
};

QTEST_MAIN(TestOrganizer)
#include "tst_organizer.moc"
