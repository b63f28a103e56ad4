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
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
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
        QTest::newRow("category") << 0 << "Office"
                                  << "categories"
                                  << "Office";
        // Without a category the list stays on the one chosen before.
        QTest::newRow("no category") << 0 << ""
                                     << "pinnedApps"
                                     << "Office";
        QTest::newRow("unknown category") << 0 << "Nope"
                                          << "pinnedApps"
                                          << "Office";
        QTest::newRow("app") << 1 << "beta.desktop"
                             << "appPinned"
                             << "Beta";
        QTest::newRow("no app") << 1 << ""
                                << "chooseApp"
                                << "No app chosen";
        QTest::newRow("settings") << 2 << ""
                                  << "densityNormal"
                                  << "";
    }
    void oneWindowFollowsEachRequest()
    {
        QFETCH(int, pane);
        QFETCH(QString, item);
        OrganizerWindow* window = open(pane, item);
        QVERIFY(window);
        QCOMPARE(window->windowTitle(), "Pomvar Organizer");
        QCOMPARE(window->pane(), pane);
        QFETCH(QString, focus);
        QTRY_COMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "",
                     focus);
        QFETCH(QString, shown);
        if (pane == 0)
            QCOMPARE(list("categories")->currentKey(), shown);
        if (pane == 1)
            QCOMPARE(window->findChild<QLabel*>("appName")->text(), shown);
        // Never a second window.
        int windows = 0;
        for (QWidget* each : QApplication::topLevelWidgets())
            windows += each->objectName() == "organizerWindow";
        QCOMPARE(windows, 1);
        // A second request while it is open: the same window, on the pane asked for.
        QVERIFY(m_server.send(request::organizer(OrganizerDlgMode::settings, {})));
        QTRY_COMPARE(window->pane(), 2);
        QCOMPARE(InProcessServer::waitForWindow("organizerWindow"), window);
    }

    void eachChangeSetsItsFlag_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("flag");
        QTest::addColumn<QString>("myApps"); // pins | each category: its apps
        const QString unchanged =
            "alpha beta gamma | Games: alpha beta gamma | Office: delta | Tools:";
        QTest::newRow("Unpin") << "Unpin"
                               << "pinnedAppsModified"
                               << "alpha gamma | Games: alpha beta gamma | Office: delta | Tools:";
        QTest::newRow("Pin Apps") << "Pin Apps"
                                  << "pinnedAppsModified"
                                  << "alpha beta gamma delta | Games: alpha beta gamma | "
                                     "Office: delta | Tools:";
        QTest::newRow("Pinned unticked") << "Pinned"
                                         << "pinnedAppsModified"
                                         << "alpha gamma | Games: alpha beta gamma | Office: "
                                            "delta | Tools:";
        QTest::newRow("New Category") << "New Category"
                                      << "appcatsModified" << unchanged + " | Music:";
        QTest::newRow("Delete") << "Delete"
                                << "appcatsModified"
                                << "alpha beta gamma | Games: alpha beta gamma | Tools:";
        QTest::newRow("Add Apps") << "Add Apps"
                                  << "appcatsModified"
                                  << "alpha beta gamma | Games: alpha beta gamma | Office: "
                                     "delta epsilon | Tools:";
        QTest::newRow("Remove") << "Remove"
                                << "appcatsModified"
                                << "alpha beta gamma | Games: alpha beta gamma | Office: | Tools:";
        QTest::newRow("category ticked") << "Tools ticked"
                                         << "appcatsModified" << unchanged + " beta";
        QTest::newRow("New Category for an app")
            << "App New Category"
            << "appcatsModified" << unchanged + " | Music: beta";
        QTest::newRow("Clear Recent Apps") << "Clear Recent Apps"
                                           << "recentAppsModified" << unchanged;
        QTest::newRow("preference") << "Animation effects"
                                    << "" << unchanged;
    }
    void eachChangeSetsItsFlag()
    {
        QFETCH(QString, action);
        QVERIFY(act(action));
        QFETCH(QString, flag);
        const Json flags = m_server.ask(request::plain(request::getMenuDataModifiedStatus));
        for (const char* each : { MenuDataStatus::kAppFolderModified,
                                  MenuDataStatus::kRecentAppsModified,
                                  MenuDataStatus::kAppcatsModified,
                                  MenuDataStatus::kPinnedAppsModified })
            QVERIFY2(flags.at(each) == (flag == each), each);
        QCOMPARE(m_server.ask(request::plain(request::getMenuDataModifiedStatus)),
                 Json::parse(R"({"appFolderModified": false, "recentAppsModified": false,
                                 "appcatsModified": false, "pinnedAppsModified": false})"));
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
        QCOMPARE(m_server.ask(request::plain(request::getRecentAppsMenuData)).size(),
                 action == "Clear Recent Apps" ? 0u : 2u);
        // Saved before the click returned: a server killed now loses nothing.
        QVERIFY(StoreFile(m_desktop.storePath()).load() == m_server.app().model().store());
    }

    void reorder_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("how"); // a button, Alt+key, or a drop before a row or onto it
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("myApps");
        const QString rest = " | Games: alpha beta gamma | Office: delta | Tools:";
        QTest::newRow("pin down") << "pinnedApps"
                                  << "pinsDown"
                                  << "alpha.desktop"
                                  << "beta alpha gamma" + rest;
        QTest::newRow("pin Alt+Up") << "pinnedApps"
                                    << "Alt+Up"
                                    << "gamma.desktop"
                                    << "alpha gamma beta" + rest;
        QTest::newRow("pin dropped first") << "pinnedApps"
                                           << "before 0"
                                           << "gamma.desktop"
                                           << "gamma alpha beta" + rest;
        QTest::newRow("pin dropped last") << "pinnedApps"
                                          << "before -1"
                                          << "alpha.desktop"
                                          << "beta gamma alpha" + rest;
        QTest::newRow("pin dropped onto itself") << "pinnedApps"
                                                 << "onto 1"
                                                 << "beta.desktop"
                                                 << "alpha beta gamma" + rest;
        QTest::newRow("top pin up") << "pinnedApps"
                                    << "pinsUp"
                                    << "alpha.desktop"
                                    << "alpha beta gamma" + rest;
        QTest::newRow("category up") << "categories"
                                     << "categoriesUp"
                                     << "Office"
                                     << "alpha beta gamma | Office: delta | Games: alpha beta "
                                        "gamma | Tools:";
        QTest::newRow("category Alt+Down") << "categories"
                                           << "Alt+Down"
                                           << "Games"
                                           << "alpha beta gamma | Office: delta | Games: alpha "
                                              "beta gamma | Tools:";
        QTest::newRow("category dropped") << "categories"
                                          << "before 0"
                                          << "Tools"
                                          << "alpha beta gamma | Tools: | Games: alpha beta "
                                             "gamma | Office: delta";
        QTest::newRow("member down") << "categoryApps"
                                     << "membersDown"
                                     << "beta.desktop"
                                     << "alpha beta gamma | Games: alpha gamma beta | Office: "
                                        "delta | Tools:";
        QTest::newRow("member Alt+Up") << "categoryApps"
                                       << "Alt+Up"
                                       << "beta.desktop"
                                       << "alpha beta gamma | Games: beta alpha gamma | Office: "
                                          "delta | Tools:";
        QTest::newRow("member dropped") << "categoryApps"
                                        << "before 0"
                                        << "gamma.desktop"
                                        << "alpha beta gamma | Games: gamma alpha beta | Office: "
                                           "delta | Tools:";
    }
    void reorder()
    {
        QFETCH(QString, list);
        QFETCH(QString, how);
        QFETCH(QString, item);
        QVERIFY(open(0, "Games"));
        OrganizerListView* view = this->list(list);
        view->selectKeys({ item });
        if (how.startsWith("Alt+"))
            QTest::keyClick(view, how.endsWith("Up") ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
        else if (how.contains(' '))
            drop(view, view, item, how);
        else
            button(how)->click();
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
        // The moved item stays selected, so that it can be moved on.
        QCOMPARE(view->selectedKeys(), QStringList{ item });
    }

    void appsDroppedFromAnotherList_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("myApps");
        QTest::newRow("pin onto a category")
            << "pinnedApps"
            << "categories"
            << "onto 2"
            << "alpha.desktop"
            << "alpha beta gamma | Games: alpha beta gamma | Office: delta | Tools: alpha";
        // The picker of "Pin Apps…" lists the apps not pinned yet.
        QTest::newRow("picked onto a category")
            << "appPickerList"
            << "categories"
            << "onto 0"
            << "delta.desktop"
            << "alpha beta gamma | Games: alpha beta gamma delta | Office: delta | Tools:";
        QTest::newRow("picked between pins")
            << "appPickerList"
            << "pinnedApps"
            << "before 1"
            << "epsilon.desktop"
            << "alpha epsilon beta gamma | Games: alpha beta gamma | Office: delta | Tools:";
        QTest::newRow("member into the pins")
            << "categoryApps"
            << "pinnedApps"
            << "before -1"
            << "delta.desktop"
            << "alpha beta gamma delta | Games: alpha beta gamma | Office: delta | Tools:";
    }
    void appsDroppedFromAnotherList()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, how);
        QFETCH(QString, item);
        QVERIFY(open(0, "Office"));
        OrganizerListView* source = list(from);
        if (from == "appPickerList") {
            button("pinApps")->click();
            QWidget* picker = InProcessServer::waitForWindow("appPicker");
            QVERIFY(picker);
            source = picker->findChild<OrganizerListView*>();
        }
        drop(source, list(to), item, how);
        QFETCH(QString, myApps);
        QCOMPARE(summary(), myApps);
    }

    void renameIsDeliveredOnce()
    {
        QVERIFY(open(0, "Games"));
        QTRY_VERIFY(list("categories")->hasFocus());
        QTest::keyClick(list("categories"), Qt::Key_F2);
        QVERIFY(answer("Rename Category", "  Fun  "));
        const Json payload = m_server.ask(request::plain(request::getMyAppsMenuData));
        QCOMPARE(payload[field::renamedAppcats],
                 Json::parse(R"([{"old": "Games", "new": "Fun"}])"));
        QCOMPARE(payload[field::appcats], Json::parse(R"(["Fun", "Office", "Tools"])"));
        QCOMPARE(m_server.ask(request::plain(
                     request::getMenuDataModifiedStatus))[MenuDataStatus::kAppcatsModified],
                 true);
        QCOMPARE(m_server.ask(request::plain(request::getMyAppsMenuData))[field::renamedAppcats],
                 Json::array());
        // Still selected under its new name.
        QCOMPARE(list("categories")->currentKey(), "Fun");
    }

    void namesAreCheckedInTheDialog_data()
    {
        QTest::addColumn<QString>("opener");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("appcats");
        const QString taken = "A category named \u201c%1\u201d already exists.";
        const QString kept = "Games Office Tools";
        for (const char* opener : { "newCategory", "appNewCategory", "context menu" }) {
            QTest::addRow("%s, empty", opener) << opener << "   "
                                               << "A category needs a name." << kept;
            QTest::addRow("%s, taken", opener) << opener << " gAMES " << taken.arg("Games") << kept;
            QTest::addRow("%s, new", opener) << opener << " Music "
                                             << "" << kept + " Music";
        }
        QTest::newRow("rename, taken") << "renameCategory"
                                       << "OFFICE" << taken.arg("Office") << kept;
        QTest::newRow("rename, empty") << "renameCategory"
                                       << ""
                                       << "A category needs a name." << kept;
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
        if (opener == "context menu") {
            QVERIFY(m_server.send(request::createNewAppcatCxtmnu("beta.desktop")));
        } else {
            const bool app = opener == "appNewCategory";
            QVERIFY(open(app ? 1 : 0, app ? "beta.desktop" : "Games"));
            button(opener)->click();
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
        QFETCH(QString, appcats);
        std::vector<std::string> expected;
        for (const QString& each : appcats.split(' '))
            expected.push_back(each.toStdString());
        QCOMPARE(m_server.ask(request::plain(request::getMyAppsMenuData))[field::appcats],
                 Json(expected));
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
        QTest::newRow("Compact") << "densityCompact" << UserPrefs::kMenuDensity << Json(1)
                                 << int(Qt::Key_Left);
        QTest::newRow("Animation effects")
            << "animationFx" << UserPrefs::kAnimationFx << Json(false) << int(Qt::Key_Space);
        QTest::newRow("Remember expanded categories")
            << "saveExpAppCats" << UserPrefs::kSaveExpAppCats << Json(false) << int(Qt::Key_Space);
        QTest::newRow("Remember last menu")
            << "saveLastMenu" << UserPrefs::kSaveLastMenu << Json(false) << int(Qt::Key_Space);
        QTest::newRow("Only one category open at a time")
            << "oneExpAppCat" << UserPrefs::kOneExpAppCat << Json(true) << int(Qt::Key_Space);
    }
    void preferencesRoundTrip()
    {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(Json, set);
        QFETCH(int, back);
        OrganizerWindow* window = open(2, {});
        QVERIFY(window);
        auto* button = window->findChild<QAbstractButton*>(control);
        QCOMPARE(button->text(), QTest::currentDataTag());
        button->setFocus();
        QTRY_VERIFY(button->hasFocus());
        const Json before = m_server.ask(request::plain(request::getUserPrefs));
        // Changed by keys, as a keyboard user does, then set back.
        for (const auto& [pressed, value] :
             { std::pair(int(Qt::Key_Space), set), { back, before[key.toStdString()] } }) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(pressed));
            Json expected = before;
            expected[key.toStdString()] = value;
            QCOMPARE(m_server.ask(request::plain(request::getUserPrefs)), expected);
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
        auto* box = open(2, {})->findChild<QCheckBox*>("startAtLogin");
        QCOMPARE(box->text(), "Start Pomvar at login");
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
        return window && window->pane() == pane ? window : nullptr;
    }

    static OrganizerListView* list(const QString& name)
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = window->findChild<OrganizerListView*>(name))
                return found;
        }
        return nullptr;
    }

    static QPushButton* button(const QString& name)
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = window->findChild<QPushButton*>(name); found && found->isVisible())
                return found;
        }
        return nullptr;
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
        std::unique_ptr<QMimeData> data(from->listModel()->mimeData(
            { from->listModel()->index(from->listModel()->rowOf(item)) }));
        const QModelIndex parent = onto ? to->listModel()->index(row) : QModelIndex();
        QVERIFY(to->listModel()->canDropMimeData(
            data.get(), Qt::MoveAction, onto ? -1 : row, 0, parent));
        QVERIFY(
            to->listModel()->dropMimeData(data.get(), Qt::MoveAction, onto ? -1 : row, 0, parent));
    }

    // Does what a row names, in the pane it is on; false when a step could not be taken.
    bool act(const QString& action)
    {
        if (action == "Unpin" || action == "Delete" || action == "Remove" ||
            action == "New Category" || action == "Pin Apps" || action == "Add Apps") {
            if (!open(0, "Office"))
                return false;
            list("pinnedApps")->selectKeys({ "beta.desktop" });
            list("categoryApps")->selectKeys({ "delta.desktop" });
        }
        if (action == "Unpin")
            button("unpin")->click();
        if (action == "Remove")
            QTest::keyClick(list("categoryApps"), Qt::Key_Delete);
        if (action == "Delete") {
            QTest::keyClick(list("categories"), Qt::Key_Delete);
            auto* box = qobject_cast<QMessageBox*>(
                InProcessServer::waitForWindow("deleteCategoryConfirmation"));
            if (!box || box->informativeText() != "The apps in it stay installed.")
                return false;
            for (QAbstractButton* each : box->buttons()) {
                if (each->text() == "Delete")
                    each->click();
            }
        }
        if (action == "New Category") {
            button("newCategory")->click();
            return answer("New Category", "Music");
        }
        if (action == "Pin Apps" || action == "Add Apps") {
            button(action == "Pin Apps" ? "pinApps" : "addApps")->click();
            // The search's matching: "spread" finds Delta by its generic name.
            return pick(action == "Pin Apps" ? "spread" : "eps");
        }
        if (action == "Pinned" || action == "Tools ticked" || action == "App New Category") {
            OrganizerWindow* window = open(1, "beta.desktop");
            if (!window)
                return false;
            if (action == "Pinned")
                window->findChild<QCheckBox*>("appPinned")->click();
            for (QCheckBox* box : window->findChildren<QCheckBox*>("appCategory")) {
                if (action == "Tools ticked" && box->text() == "Tools")
                    box->click();
            }
            if (action == "App New Category") {
                button("appNewCategory")->click();
                return answer("New Category", "Music");
            }
        }
        if (action == "Clear Recent Apps" || action == "Animation effects") {
            OrganizerWindow* window = open(2, {});
            if (!window)
                return false;
            if (action == "Clear Recent Apps")
                window->findChild<QPushButton*>("clearRecent")->click();
            else
                window->findChild<QCheckBox*>("animationFx")->click();
        }
        return true;
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

    // Filters the open picker and chooses its only row by keys.
    static bool pick(const QString& filter)
    {
        QWidget* picker = InProcessServer::waitForWindow("appPicker");
        auto* field = picker ? picker->findChild<QLineEdit*>() : nullptr;
        if (!field)
            return false;
        QTest::keyClicks(field, filter);
        if (picker->findChild<OrganizerListView*>()->listModel()->rowCount() != 1)
            return false;
        QTest::keyClick(field, Qt::Key_Down);
        auto* list = picker->findChild<OrganizerListView*>();
        if (!QTest::qWaitFor([&] { return list->hasFocus(); }))
            return false;
        QTest::keyClick(list, Qt::Key_Return);
        return !picker->isVisible();
    }

    // The My Apps payload in short: "pins | Category: apps | …", app keys without ".desktop".
    QString summary() const
    {
        const Json payload = m_server.ask(request::plain(request::getMyAppsMenuData));
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
