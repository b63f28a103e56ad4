// The organizer in a server run in-process against real desktop entries, driven through its
// widgets while what the front end would read is asked over the wire: one window following each
// request, each change shown in My Apps and the panes, the
// payload's order after reordering by buttons, keys and drops, the name rule told inside the
// dialog, the five preferences and the autostart entry.
#include "ChildProcess.h"
#include "InProcessServer.h"
#include "TestDesktop.h"
#include "pomvarsrv/catalogue/AutostartEntry.h"
#include "pomvarsrv/ui/OrganizerListModel.h"
#include "pomvarsrv/ui/OrganizerListView.h"
#include "pomvarsrv/ui/OrganizerWindow.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QCheckBox>
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
        m_server.ask(request::plain(request::getMyAppsMenuData));
    }

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
        QFETCH(QString, item);
        QFETCH(QString, focus);
        QFETCH(QString, shown);
        QFETCH(QString, onPane);
        const int pane = onPane.toInt();
        OrganizerWindow* window = open(pane, item);
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
        QVERIFY(m_server.send(request::organizer(OrganizerDlgMode::settings, {})));
        QTRY_COMPARE(window->pane(), 2);
        int windows = 0;
        for (QWidget* each : QApplication::topLevelWidgets())
            windows += each->objectName() == "organizerWindow";
        QCOMPARE(windows, 1);
    }

    void eachChangeShowsEverywhere_data()
    {
        // The control clicked, then the dialog answered ("pick <filter>", "name <name>",
        // "rename <name>" or "confirm"); My Apps after it. The flags each change sets and its
        // saving are tst_servermodel's. The picker's filter matches as the search does: "spread"
        // finds Delta's generic name.
        rows({ "onPane", "answer", "myApps" },
             { "unpin;0;;beta gamma…",
               "pinApps;0;pick spread;* delta…",
               "appPinned;1;;alpha gamma…",
               "newCategory;0;name Music;*… | Music:",
               "deleteCategory;0;confirm;* | Games: * | Tools:",
               "renameCategory;0;rename Fun;* | Games: * | Fun: delta | Tools:",
               "addApps;0;pick eps;* | Games: * | Office: delta epsilon | Tools:",
               "removeApps;0;;* | Games: * | Office: | Tools:",
               "Tools;1;;*… beta",
               "appNewCategory;1;name Music;*… | Music: beta",
               "clearRecent;2;;*…" });
    }
    void eachChangeShowsEverywhere()
    {
        QFETCH(QString, answer);
        QFETCH(QString, onPane);
        const int pane = onPane.toInt();
        QVERIFY(open(pane, pane == 0 ? "Office" : "beta.desktop"));
        // The buttons act on what is highlighted: each list's first app.
        for (const char* list : { "pinnedApps", "categoryApps" }) {
            if (auto* view = find<OrganizerListView>(list))
                view->selectKeys({ view->listModel()->keyAt(0) });
        }
        find<QAbstractButton>(QTest::currentDataTag())->click();
        const QString value = answer.section(' ', 1);
        if (answer.startsWith("pick"))
            QVERIFY(pick(value));
        if (answer.contains("name"))
            QVERIFY(
                this->answer(answer.startsWith("re") ? "Rename Category" : "New Category", value));
        if (answer == "confirm") {
            auto* box = qobject_cast<QMessageBox*>(
                InProcessServer::waitForWindow("deleteCategoryConfirmation"));
            QCOMPARE(box->informativeText(), "The apps in it stay installed.");
            for (QAbstractButton* button : box->buttons()) {
                if (button->text() == "Delete")
                    button->click();
            }
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
        QCOMPARE(ask(request::getRecentAppsMenuData).size(), pane == 2 ? 0u : 2u);
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
        QFETCH(QString, list);
        QFETCH(QString, highlighted);
        QFETCH(QString, enabled);
        m_server.app().model().setHidden("epsilon.desktop", list == "hiddenApps");
        QVERIFY(open(0, "Office"));
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
        QVERIFY(open(2, {}));
        find<QAbstractButton>("clearRecent")->click();
        find<QAbstractButton>("undoClearRecent")->click();
        QCOMPARE(ask(request::getRecentAppsMenuData).size(), 2u);
        find<QAbstractButton>("clearRecent")->click();
        QVERIFY(find<QAbstractButton>("undoClearRecent"));
        QVERIFY(open(2, {})); // closed, then open again
        QVERIFY(!find<QAbstractButton>("undoClearRecent"));
        QCOMPARE(ask(request::getRecentAppsMenuData).size(), 0u);
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
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, how);
        QFETCH(QString, item);
        if (to.isEmpty())
            to = from;
        if (item[0] >= 'a')
            item += ".desktop";
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
        QFETCH(QString, opener);
        QFETCH(QString, name);
        QFETCH(QString, problem);
        QFETCH(QString, appcats);
        if (problem.startsWith("taken"))
            problem = "A category named \u201c" + problem.mid(6) + "\u201d already exists.";
        if (opener == "context menu") {
            QVERIFY(m_server.send(request::createNewAppcatCxtmnu("beta.desktop")));
        } else {
            const bool app = opener == "appNewCategory";
            QVERIFY(open(app ? 1 : 0, app ? "beta.desktop" : "Games"));
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
        // The control, labelled as the row's name; its key; the value set by Space; the key that
        // sets it back.
        rows({ "control", "key", "value", "back" },
             { QString("Compact;densityCompact;") + UserPrefs::kMenuDensity + ";1;Left",
               QString("Animation effects;animationFx;") + UserPrefs::kAnimationFx + ";false;",
               QString("Remember expanded categories;saveExpAppCats;") +
                   UserPrefs::kSaveExpAppCats + ";false;",
               QString("Remember last menu;saveLastMenu;") + UserPrefs::kSaveLastMenu + ";false;",
               QString("Only one category open at a time;oneExpAppCat;") +
                   UserPrefs::kOneExpAppCat + ";true;" });
    }
    void preferencesRoundTrip()
    {
        QFETCH(QString, control);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, back);
        const Json set = Json::parse(value.toStdString());
        QVERIFY(open(2, {}));
        auto* button = find<QAbstractButton>(control);
        QCOMPARE(button->text(), QTest::currentDataTag());
        button->setFocus();
        QTRY_VERIFY(button->hasFocus());
        const Json before = ask(request::getUserPrefs);
        // Changed by keys, as a keyboard user does, then set back.
        for (const auto& [pressed, value] : { std::pair(int(Qt::Key_Space), set),
                                              { int(back == "Left" ? Qt::Key_Left : Qt::Key_Space),
                                                before[key.toStdString()] } }) {
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
        // Written valid, the program quoted when it must be.
        const auto valid = [&] {
            const auto check = runChild("desktop-file-validate", { entry.path() });
            return check.exitedWith(0) && check.out.isEmpty();
        };
        const QString odd = m_desktop.root() + "/a b/po\\m\"v$r"; // a program it may run
        QVERIFY(TestDesktop::write(odd, "#!/bin/sh\n", true));
        QVERIFY(entry.setEnabled(true, odd) && valid());
        QVERIFY(open(2, {}));
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

    // Types the name into the open name dialog of that title and accepts it.
    static bool answer(const QString& title, const QString& name)
    {
        QWidget* dialog = InProcessServer::waitForWindow(
            title == "New Category" ? "newCategoryPrompt" : "categoryNameDialog");
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
