// The panel and dialogs of the server in the user's language, with the translations loaded as
// both programs load them at start: German under LANG=de_DE.UTF-8 and LANGUAGE=de, the source
// texts under LANG=C.UTF-8. POMVAR_TEST_LANGUAGE says which of the two the test runs under.
#include "PanelFixture.h"

#include "CategoryInfoWindow.h"
#include "CategoryNameDialog.h"
#include "InProcessServer.h"
#include "NewCategoryPrompt.h"
#include "ServerModel.h"
#include "i18n/Translations.h"
#include "ui/ControlMenu.h"
#include "ui/MenuSelectorButton.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include <functional>
#include <map>

using namespace pomvar;
using namespace pomvar::test;

namespace {

bool german()
{
    return qEnvironmentVariable("POMVAR_TEST_LANGUAGE") == u"de";
}

QStringList texts(const QList<QAction*>& actions)
{
    QStringList found;
    for (const QAction* action : actions)
        if (!action->isSeparator())
            found << action->text();
    return found;
}

template <typename Widget>
QStringList texts(const QList<Widget*>& widgets)
{
    QStringList found;
    for (const Widget* widget : widgets)
        found << widget->text();
    return found;
}

// The app or category row's context menu: its entries, then the submenu's.
QStringList contextMenu(PanelFixture& f, const std::string& row)
{
    MenuListView& list = f.menuView(0);
    QMenu* menu = f.openContextMenu(list, f.rowOf(list, row));
    if (!menu)
        return { QStringLiteral("no context menu") };
    QStringList found = texts(menu->actions());
    for (QAction* action : menu->actions())
        if (action->menu())
            found << texts(action->menu()->actions());
    menu->close();
    return found;
}

// The prompt of "Add to New Category…", after an empty name was accepted.
QStringList newCategoryPrompt()
{
    srv::ServerModel model;
    srv::NewCategoryPrompt prompt(model);
    prompt.ask(QStringLiteral("app1"));
    auto* dialog = InProcessServer::waitForWindow<srv::CategoryNameDialog>("newCategoryPrompt");
    if (!dialog)
        return { QStringLiteral("no prompt") };
    dialog->accept();
    const QStringList found = QStringList{ dialog->windowTitle() }
                              << texts(dialog->findChildren<QLabel*>())
                              << texts(dialog->findChild<QDialogButtonBox*>()->buttons());
    dialog->close();
    return found;
}

QString categoryCount(std::size_t apps)
{
    srv::CategoryInfoWindow window;
    window.showCategory({ QStringLiteral("Games"), std::vector<srv::CategoryInfo::App>(apps) });
    return window.findChild<QLabel*>(QStringLiteral("categoryCount"))->text();
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString folder = Translations::folderFor(qEnvironmentVariable("POMVAR_BIN_DIR"), 1);
        QCOMPARE(Translations::install(folder), german() ? "de" : "");
        // One app pinned, one in a category.
        const std::string icon = m_f.icons().square().toStdString();
        m_f.menus().addApp({ "app1", "Name of app1", icon, icon });
        m_f.menus().addApp({ "app2", "Name of app2", icon, icon });
        m_f.menus().pin("app1");
        m_f.menus().addCategory("Games", { "app2" });
        m_f.start();
        QVERIFY(m_f.clickTray());
    }

    void textsAreInTheUsersLanguage_data()
    {
        QTest::addColumn<QStringList>("english");
        QTest::addColumn<QStringList>("german");
        QTest::newRow("selector") << QStringList{ "My Apps", "Recent", "All Apps" }
                                  << QStringList{ "Favoriten", "Zuletzt", "Alle Apps" };
        QTest::newRow("control bar")
            << QStringList{ "Search", "Organize" } << QStringList{ "Suchen", "Organisieren" };
        QTest::newRow("My Apps empty")
            << QStringList{ "My Apps",
                            "Click Organize to pin your favorite apps to the Pomvar and organize "
                            "apps into app categories.",
                            "Click All Apps on the left to browse apps on your Mac." }
            << QStringList{ "Favoriten",
                            "Klicken Sie auf „Organisieren“, um Ihre Lieblings-Apps an Pomvar "
                            "anzuheften und Apps in App-Kategorien zu ordnen.",
                            "Klicken Sie links auf „Alle Apps“, um die Apps auf Ihrem Computer "
                            "zu durchstöbern." };
        QTest::newRow("Recent empty")
            << QStringList{ "Recent Apps",
                            "Apps that were recently launched from the Pomvar will appear here." }
            << QStringList{ "Zuletzt verwendete Apps",
                            "Apps, die Sie zuletzt aus Pomvar gestartet haben, erscheinen hier." };
        QTest::newRow("control menu")
            << QStringList{ "Settings…", "About…", "Check For Updates", "Quit" }
            << QStringList{ "Einstellungen …", "Über Pomvar", "Nach Updates suchen", "Beenden" };
        QTest::newRow("app context menu")
            << QStringList{ "Open",     "Get Info", "Unpin App",           "App Categories",
                            "Organize", "Games",    "Add to New Category…" }
            << QStringList{ "Öffnen",
                            "Informationen",
                            "App lösen",
                            "App-Kategorien",
                            "Organisieren",
                            "Games",
                            "Zu neuer Kategorie hinzufügen …" };
        QTest::newRow("category context menu") << QStringList{ "Get Info", "Organize" }
                                               << QStringList{ "Informationen", "Organisieren" };
        // The server's dialog, with Qt's own "Cancel".
        QTest::newRow("new category prompt") << QStringList{ "New Category",
                                                             "A category needs a name.",
                                                             "Category name",
                                                             "Create",
                                                             "Cancel" }
                                             << QStringList{ "Neue Kategorie",
                                                             "Eine Kategorie braucht einen Namen.",
                                                             "Name der Kategorie",
                                                             "Erstellen",
                                                             "Abbrechen" };
        // Plural forms, English ones included.
        QTest::newRow("category info") << QStringList{ "No apps", "1 app", "2 apps" }
                                       << QStringList{ "Keine Apps", "1 App", "2 Apps" };
    }

    void textsAreInTheUsersLanguage()
    {
        QFETCH(QStringList, english);
        QFETCH(QStringList, german);
        PomvarView& view = m_f.view();
        const std::map<QString, std::function<QStringList()>> shown = {
            { "selector", [&] { return texts(view.findChildren<MenuSelectorButton*>()); } },
            { "control bar",
              [&] {
                  return QStringList{
                      view.findChild<QAbstractButton*>("searchButton")->text(),
                      view.findChild<QAbstractButton*>("organizeButton")->text(),
                  };
              } },
            { "My Apps empty",
              [&] {
                  return texts(view.findChild<QWidget*>("myAppsEmpty")->findChildren<QLabel*>());
              } },
            { "Recent empty",
              [&] {
                  return texts(
                      view.findChild<QWidget*>("recentAppsEmpty")->findChildren<QLabel*>());
              } },
            { "control menu",
              [&] {
                  return texts(view.findChild<ControlMenu*>("controlMenu")->entries()->actions());
              } },
            { "app context menu", [&] { return contextMenu(m_f, "app1"); } },
            { "category context menu", [&] { return contextMenu(m_f, "Games"); } },
            { "new category prompt", newCategoryPrompt },
            { "category info",
              [] {
                  return QStringList{ categoryCount(0), categoryCount(1), categoryCount(2) };
              } },
        };
        QStringList found = shown.at(QString::fromLatin1(QTest::currentDataTag()))();
        found.removeAll(QString()); // the empty states' image labels
        QCOMPARE(found, ::german() ? german : english);
    }

private:
    PanelFixture m_f;
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
