// The panel and dialogs of the server in the user's language, with the translations loaded as
// both programs load them at start: German under LANG=de_DE.UTF-8 and LANGUAGE=de, the source
// texts under LANG=C.UTF-8. POMVAR_TEST_LANGUAGE says which of the two the test runs under.
#include "PanelFixture.h"

#include "InProcessServer.h"
#include "i18n/Translations.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/CategoryInfoWindow.h"
#include "pomvarsrv/ui/CategoryNameDialog.h"
#include "pomvarsrv/ui/NewCategoryPrompt.h"
#include "ui/MenuSelectorButton.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace pomvar;
using namespace pomvar::test;

namespace {

template <typename Item>
QStringList texts(const QList<Item*>& items)
{
    QStringList found;
    for (const Item* item : items)
        found << item->text();
    found.removeAll(QString()); // separators, the empty states' image labels
    return found;
}

// The app row's context menu: its entries, then the submenu's.
QStringList contextMenu(PanelFixture& f)
{
    MenuListView& list = f.menuView(0);
    QMenu* menu = f.openContextMenu(list, f.rowOf(list, "app1"));
    if (!menu)
        return { QStringLiteral("no context menu") };
    QStringList found = texts(menu->actions());
    for (QAction* action : menu->actions())
        if (action->menu())
            found << texts(action->menu()->actions());
    menu->close();
    return found;
}

// The server's prompt of "Add to New Category…", after an empty name was accepted.
QStringList newCategoryPrompt()
{
    srv::ServerModel model;
    srv::NewCategoryPrompt::open(model, QStringLiteral("app1"));
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
    void textsAreInTheUsersLanguage()
    {
        const bool german = qEnvironmentVariable("POMVAR_TEST_LANGUAGE") == u"de";
        const QString folder = Translations::folderFor(qEnvironmentVariable("POMVAR_BIN_DIR"), 1);
        QCOMPARE(Translations::install(folder), german ? "de" : "");
        PanelFixture f; // one app pinned, nothing else: both empty states show
        const std::string icon = f.icons().square().toStdString();
        f.menus().addApp({ "app1", "Name of app1", icon, icon });
        f.menus().pin("app1");
        f.start();
        QVERIFY(f.clickTray());
        PomvarView& view = f.view();
        // The selector, the empty states of My Apps and Recent, an app's context menu, a dialog
        // of the server with Qt's own "Cancel", and plural forms (English ones too).
        const QStringList shown =
            texts(view.findChildren<MenuSelectorButton*>())
            << texts(view.findChild<QWidget*>("myAppsEmpty")->findChildren<QLabel*>())
            << texts(view.findChild<QWidget*>("recentAppsEmpty")->findChildren<QLabel*>())
            << contextMenu(f) << newCategoryPrompt()
            << QStringList{ categoryCount(0), categoryCount(1), categoryCount(2) };
        // Separated by '|'.
        const QString english =
            "My Apps|Recent|All Apps|My Apps|Click Organize to pin your favorite apps to the "
            "Pomvar "
            "and organize apps into app categories.|Click All Apps on the left to browse apps on "
            "your computer.|Recent Apps|Apps that were recently launched from the Pomvar will "
            "appear "
            "here.|Open|Get Info|Unpin App|App Categories|Organize|Add to New Category…|New "
            "Category|A category needs a name.|Category name|Create|Cancel|No apps|1 app|2 apps";
        const QString deutsch =
            "Favoriten|Zuletzt|Alle Apps|Favoriten|Klicken Sie auf „Organisieren“, um Ihre "
            "Lieblings-Apps an Pomvar anzuheften und Apps in App-Kategorien zu ordnen.|Klicken Sie "
            "links auf „Alle Apps“, um die Apps auf Ihrem Computer zu durchstöbern.|Zuletzt "
            "verwendete Apps|Apps, die Sie zuletzt aus Pomvar gestartet haben, erscheinen "
            "hier.|Öffnen|Informationen|App lösen|App-Kategorien|Organisieren|Zu neuer Kategorie "
            "hinzufügen …|Neue Kategorie|Eine Kategorie braucht einen Namen.|Name der "
            "Kategorie|Erstellen|Abbrechen|Keine Apps|1 App|2 Apps";
        QCOMPARE(shown, (german ? deutsch : english).split('|'));
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
