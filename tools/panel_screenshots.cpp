// Takes the panel's screenshots for the documentation: run it under Xvfb (scripts/screenshots.sh)
// with the folder to write to. The panel is built against the in-process fake runtime server with
// app names and icons of the system theme, opened from the tray icon's activation as a click
// would, and grabbed from the screen, popup menus included, cropped to what shows. Under a German
// locale (LANG=de_DE.UTF-8 LANGUAGE=de) the panel and its data are in German, and the files are
// named panel-*-de.png; under SCREENSHOTS_PALETTE=dark, panel-*-dark.png.
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "ScreenshotPalette.h"
#include "ThemeIcons.h"
#include "i18n/Translations.h"
#include "model/MenuList.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/AppContextMenu.h"
#include "ui/ControlMenu.h"
#include "ui/MenuBarScene.h"
#include "ui/MenuListView.h"
#include "ui/MenuSelectorButton.h"
#include "ui/PanelWindow.h"
#include "ui/PomvarView.h"
#include "ui/TrayIcon.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <string_view>

using namespace pomvar;
using test::FakeMenus;
using test::FakeRuntimeServer;
using test::ThemeIcons;

namespace {

struct ScreenshotApp
{
    const char* key;
    const char* name;
    const char* germanName; // as a German desktop names it
    const char* icon;
};

// Apps as a desktop might have them, with icons of the system theme.
const ScreenshotApp kApps[] = {
    { "terminal", "Terminal", "Terminal", "utilities-terminal" },
    { "browser", "Web Browser", "Webbrowser", "web-browser" },
    { "files", "Files", "Dateien", "system-file-manager" },
    { "editor", "Text Editor", "Texteditor", "accessories-text-editor" },
    { "calculator", "Calculator", "Rechner", "accessories-calculator" },
    { "charmap", "Characters", "Zeichen", "accessories-character-map" },
    { "dictionary", "Dictionary", "Wörterbuch", "accessories-dictionary" },
    { "screenshot", "Screenshot", "Bildschirmfoto", "applets-screenshooter" },
    { "camera", "Camera", "Kamera", "camera-photo" },
    { "video", "Video Recorder", "Videorekorder", "camera-video" },
    { "contacts", "Contacts", "Kontakte", "address-book-new" },
    { "calendar", "Calendar", "Kalender", "appointment-new" },
    { "mail", "Mail", "E-Mail", "emblem-mail" },
    { "music", "Music Player", "Musikwiedergabe", "multimedia-player" },
    { "volume", "Volume Control", "Lautstärkeregler", "multimedia-volume-control" },
    { "photos", "Photos", "Fotos", "emblem-photos" },
    { "fonts", "Fonts", "Schriften", "preferences-desktop-font" },
    { "keyboard", "Keyboard Layout", "Tastaturbelegung", "preferences-desktop-keyboard" },
    { "display", "Displays", "Bildschirme", "preferences-desktop-display" },
    { "remote",
      "Remote Desktop Viewer",
      "Entfernte Arbeitsflächen",
      "preferences-desktop-remote-desktop" },
    { "wallpaper", "Backgrounds", "Hintergründe", "preferences-desktop-wallpaper" },
    { "accessibility", "Accessibility", "Barrierefreiheit", "preferences-desktop-accessibility" },
    { "network", "Network Connections", "Netzwerkverbindungen", "preferences-system-network" },
    { "privacy", "Privacy", "Datenschutz", "preferences-system-privacy" },
    { "software", "Software Updates", "Softwareaktualisierung", "system-software-update" },
    { "install", "Package Installer", "Paketinstallation", "system-software-install" },
    { "users", "Users and Groups", "Benutzer und Gruppen", "system-users" },
    { "help", "Help", "Hilfe", "help-browser" },
    { "search", "File Search", "Dateisuche", "system-search" },
    { "spelling", "Spell Checker", "Rechtschreibprüfung", "tools-check-spelling" },
    { "science", "Periodic Table", "Periodensystem", "applications-science" },
    { "graphics", "Drawing", "Zeichnen", "applications-graphics" },
    { "office", "Office Suite", "Office-Paket", "applications-office" },
    { "print", "Print Queue", "Druckerwarteschlange", "document-print" },
    { "games", "Chess", "Schach", "trophy-gold" },
    { "vpn", "VPN Manager", "VPN-Verwaltung", "network-vpn" },
};

bool g_german = false;

std::string nameOf(const ScreenshotApp& app)
{
    return g_german ? app.germanName : app.name;
}

QString nameOf(const char* key)
{
    for (const ScreenshotApp& app : kApps)
        if (std::string_view(app.key) == key)
            return QString::fromStdString(nameOf(app));
    return {};
}

// A category as the welcome names it, in English or German.
std::string category(const char* name, const char* germanName)
{
    return g_german ? germanName : name;
}

// Fills the screen behind the panel, as a desktop would.
class Desktop : public QWidget
{
public:
    Desktop()
        : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint)
    {
        setGeometry(QGuiApplication::primaryScreen()->geometry());
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(0, QColor(0x5b, 0x7c, 0x99));
        gradient.setColorAt(1, QColor(0x8a, 0xa6, 0xbd));
        painter.fillRect(rect(), gradient);
    }
};

class Shooter
{
public:
    Shooter(QString folder, QString suffix)
        : m_folder(std::move(folder))
        , m_suffix(std::move(suffix))
    {}

    // The panel and every popup shown, with a margin of desktop around them.
    void shoot(const QString& name, PanelWindow& panel)
    {
        QTest::qWait(300);
        QRect area = panel.frameGeometry();
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && qobject_cast<QMenu*>(widget))
                area |= widget->frameGeometry();
        area = area.adjusted(-12, -12, 12, 12) & panel.screen()->geometry();
        const QPixmap shot =
            panel.screen()->grabWindow(0, area.x(), area.y(), area.width(), area.height());
        const QString path =
            QDir(m_folder).filePath(QStringLiteral("panel-%1%2.png").arg(name, m_suffix));
        if (!shot.save(path))
            std::fprintf(stderr, "panel_screenshots: cannot write %s\n", qPrintable(path));
        else
            std::printf("%s %dx%d\n", qPrintable(path), shot.width(), shot.height());
    }

private:
    QString m_folder;
    QString m_suffix; // "-de" for the German shots
};

// A fake runtime server with the menus, a view model and the tray scene on top.
struct Scene
{
    FakeRuntimeServer server;
    std::unique_ptr<PomvarViewModel> vm;
    std::unique_ptr<MenuBarScene> scene;

    void start(const FakeMenus& menus)
    {
        server.listen();
        menus.install(server);
        server.setDefaultReply("get-user-prefs",
                               FakeRuntimeServer::Reply::json(FakeMenus::prefs(0, true, false)));
        vm = std::make_unique<PomvarViewModel>(PomvarRT{ "localhost", server.port() });
        scene = std::make_unique<MenuBarScene>([this]() -> PomvarViewModel& { return *vm; }, [] {});
        scene->show();
    }
    PanelWindow& panel() { return *scene->panel(); }
    PomvarView& view() { return *panel().view(); }
    void open()
    {
        Q_EMIT scene->trayIcon()->icon()->activated(QSystemTrayIcon::Trigger);
        QTest::qWait(200);
    }
    void select(Pomvar menu)
    {
        auto* button = view().findChild<MenuSelectorButton*>(
            QStringLiteral("menuSelectorButton%1").arg(int(menu)));
        button->click();
        QTest::qWait(100);
    }
};

QModelIndex rowNamed(QAbstractItemModel* model, const QString& name)
{
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex top = model->index(row, 0);
        if (top.data().toString() == name)
            return top;
        for (int child = 0; child < model->rowCount(top); ++child)
            if (model->index(child, 0, top).data().toString() == name)
                return model->index(child, 0, top);
    }
    return {};
}

void closePopups()
{
    while (QWidget* popup = QApplication::activePopupWidget()) {
        if (!qobject_cast<QMenu*>(popup))
            break;
        popup->close();
    }
    QTest::qWait(100);
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: panel_screenshots FOLDER (under an X server)\n");
        return 2;
    }
    const QString language = Translations::install(QStringLiteral(POMVAR_TRANSLATIONS_DIR));
    g_german = language == u"de";
    const QString dark = test::useScreenshotPalette();
    Shooter shooter(QString::fromLocal8Bit(argv[1]),
                    (language.isEmpty() ? QString() : u'-' + language) + dark);
    Desktop desktop;
    desktop.show();
    // The tray sits at the top right; with no tray geometry the panel opens at the pointer.
    const QPoint tray(QGuiApplication::primaryScreen()->geometry().width() - 420, 4);
    QCursor::setPos(tray);

    FakeMenus menus;
    for (const ScreenshotApp& entry : kApps) {
        const auto icon = ThemeIcons::named(QString::fromLatin1(entry.icon));
        if (!icon) {
            std::fprintf(stderr, "panel_screenshots: the icon %s is missing\n", entry.icon);
            return 1;
        }
        menus.addApp({ entry.key,
                       nameOf(entry),
                       icon->path.toStdString(),
                       icon->path2x.toStdString(),
                       false });
    }
    menus.pin("terminal");
    menus.pin("browser");
    menus.pin("files");
    const std::string accessories = category("Accessories", "Zubehör");
    menus.addCategory(accessories,
                      { "calculator", "charmap", "dictionary", "editor", "screenshot" });
    menus.addCategory(category("Graphics", "Grafik"), { "camera", "photos", "graphics" });
    menus.addCategory(category("Office", "Büro"),
                      { "calendar", "contacts", "mail", "office", "print" });
    menus.addCategory(category("Sound & Video", "Audio & Video"), { "music", "video", "volume" });
    menus.addCategory(category("System", "System"),
                      { "network", "software", "install", "users", "vpn" });
    for (const char* key : { "editor", "terminal", "calculator", "photos", "mail", "browser" })
        menus.addRecent(key);

    {
        UserDefaults::setLastMenu(int(Pomvar::MyApps));
        Scene s;
        s.start(menus);
        s.open();
        s.vm->setExpandedAppCat(accessories, true);
        QTest::qWait(100);
        shooter.shoot(QStringLiteral("my-apps"), s.panel());

        s.select(Pomvar::Recent);
        shooter.shoot(QStringLiteral("recent"), s.panel());

        s.select(Pomvar::AllApps);
        MenuListView* all = s.view().menuView(Pomvar::AllApps);
        // The pointer over a row shows the hover highlight.
        const QModelIndex hovered = rowNamed(all->model(), nameOf("dictionary"));
        const QPoint over = all->viewport()->mapToGlobal(all->visualRect(hovered).center());
        QCursor::setPos(over);
        QTest::mouseMove(all->viewport(), all->viewport()->mapFromGlobal(over));
        shooter.shoot(QStringLiteral("all-apps"), s.panel());

        // An app row's context menu, with its "App Categories" submenu open.
        const QModelIndex row = rowNamed(all->model(), nameOf("editor"));
        const QPoint at = all->viewport()->mapToGlobal(all->visualRect(row).center());
        QCursor::setPos(at);
        QTest::mouseMove(all->viewport(), all->viewport()->mapFromGlobal(at));
        Q_EMIT all->rowContextMenuRequested(row, at);
        QTest::qWait(200);
        if (auto* menu = qobject_cast<AppContextMenu*>(QApplication::activePopupWidget())) {
            menu->setActiveAction(menu->appCategoriesMenu()->menuAction());
            QTest::keyClick(menu, Qt::Key_Right);
        }
        shooter.shoot(QStringLiteral("context-menu"), s.panel());
        closePopups();

        if (!s.panel().isVisible())
            s.open();
        auto* control = s.view().findChild<ControlMenu*>();
        // showMenu() returns when the menu closes: the shot is taken from a timer meanwhile.
        QTimer::singleShot(300, [&] {
            shooter.shoot(QStringLiteral("control-menu"), s.panel());
            closePopups();
        });
        control->showMenu();
        s.panel().dismiss();
    }

    {
        // One drag from All Apps onto My Apps, in three steps: the row taken, the place shown
        // below the last pinned app, the app pinned there.
        UserDefaults::setLastMenu(int(Pomvar::AllApps));
        QCursor::setPos(tray);
        Scene s;
        s.start(menus);
        s.open();
        MenuListView* all = s.view().menuView(Pomvar::AllApps);
        QWidget* from = all->viewport();
        const QPoint pressed = all->visualRect(rowNamed(all->model(), nameOf("fonts"))).center();
        QCursor::setPos(from->mapToGlobal(pressed));
        QTest::qWait(200); // the pointer's own move is in before the press
        QTest::mousePress(from, Qt::LeftButton, {}, pressed);
        for (int step = 1; step <= 8; ++step)
            QTest::mouseMove(from, pressed + QPoint(step * 5, step * 3));
        shooter.shoot(QStringLiteral("drag-1"), s.panel());

        auto* selector = s.view().findChild<MenuSelectorButton*>(
            QStringLiteral("menuSelectorButton%1").arg(int(Pomvar::MyApps)));
        QTest::mouseMove(selector);
        QTest::qWait(200);
        MenuListView* mine = s.view().menuView(Pomvar::MyApps);
        QWidget* onto = mine->viewport();
        const QPoint between =
            mine->visualRect(rowNamed(mine->model(), nameOf("files"))).center() + QPoint(0, 6);
        QCursor::setPos(onto->mapToGlobal(between));
        QTest::mouseMove(onto, between);
        shooter.shoot(QStringLiteral("drag-2"), s.panel());

        // What the runtime server answers once the app is pinned after Files.
        FakeMenus pinned = menus;
        pinned.pin("fonts");
        pinned.install(s.server);
        s.server.setDefaultReply(
            "get-menu-data-modified-status",
            FakeRuntimeServer::Reply::json(FakeMenus::modified("pinnedAppsModified")));
        QTest::mouseRelease(onto, Qt::LeftButton, {}, between);
        QTest::qWait(300);
        shooter.shoot(QStringLiteral("drag-3"), s.panel());
        s.panel().dismiss();
    }

    {
        UserDefaults::setLastMenu(int(Pomvar::MyApps));
        FakeMenus empty;
        for (const ScreenshotApp& entry : kApps) {
            const auto icon = ThemeIcons::named(QString::fromLatin1(entry.icon));
            empty.addApp({ entry.key,
                           nameOf(entry),
                           icon->path.toStdString(),
                           icon->path2x.toStdString(),
                           false });
        }
        QCursor::setPos(tray);
        Scene s;
        s.start(empty);
        s.open();
        shooter.shoot(QStringLiteral("my-apps-empty"), s.panel());
        s.select(Pomvar::Recent);
        shooter.shoot(QStringLiteral("recent-empty"), s.panel());
        s.panel().dismiss();
    }
    return 0;
}
