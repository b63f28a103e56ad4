// Takes the panel's screenshots for the documentation: run it under Xvfb (scripts/screenshots.sh)
// with the folder to write to. The panel is built against the in-process fake runtime server with
// app names and icons of the system theme, opened from the tray icon's activation as a click
// would, and grabbed from the screen, popup menus included, cropped to what shows.
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "ThemeIcons.h"
#include "model/MenuList.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
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

using namespace pomvar;
using test::FakeMenus;
using test::FakeRuntimeServer;
using test::ThemeIcons;

namespace {

struct ScreenshotApp
{
    const char* key;
    const char* name;
    const char* icon;
};

// Apps as a desktop might have them, with icons of the system theme.
const ScreenshotApp kApps[] = {
    { "terminal", "Terminal", "utilities-terminal" },
    { "browser", "Web Browser", "web-browser" },
    { "files", "Files", "system-file-manager" },
    { "editor", "Text Editor", "accessories-text-editor" },
    { "calculator", "Calculator", "accessories-calculator" },
    { "charmap", "Characters", "accessories-character-map" },
    { "dictionary", "Dictionary", "accessories-dictionary" },
    { "screenshot", "Screenshot", "applets-screenshooter" },
    { "camera", "Camera", "camera-photo" },
    { "video", "Video Recorder", "camera-video" },
    { "contacts", "Contacts", "address-book-new" },
    { "calendar", "Calendar", "appointment-new" },
    { "mail", "Mail", "emblem-mail" },
    { "music", "Music Player", "multimedia-player" },
    { "volume", "Volume Control", "multimedia-volume-control" },
    { "photos", "Photos", "emblem-photos" },
    { "fonts", "Fonts", "preferences-desktop-font" },
    { "keyboard", "Keyboard Layout", "preferences-desktop-keyboard" },
    { "display", "Displays", "preferences-desktop-display" },
    { "remote", "Remote Desktop Viewer", "preferences-desktop-remote-desktop" },
    { "wallpaper", "Backgrounds", "preferences-desktop-wallpaper" },
    { "accessibility", "Accessibility", "preferences-desktop-accessibility" },
    { "network", "Network Connections", "preferences-system-network" },
    { "privacy", "Privacy", "preferences-system-privacy" },
    { "software", "Software Updates", "system-software-update" },
    { "install", "Package Installer", "system-software-install" },
    { "users", "Users and Groups", "system-users" },
    { "help", "Help", "help-browser" },
    { "search", "File Search", "system-search" },
    { "spelling", "Spell Checker", "tools-check-spelling" },
    { "science", "Periodic Table", "applications-science" },
    { "graphics", "Drawing", "applications-graphics" },
    { "office", "Office Suite", "applications-office" },
    { "print", "Print Queue", "document-print" },
    { "games", "Chess", "trophy-gold" },
    { "vpn", "VPN Manager", "network-vpn" },
};

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
    explicit Shooter(QString folder)
        : m_folder(std::move(folder))
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
        const QString path = QDir(m_folder).filePath(name);
        if (!shot.save(path))
            std::fprintf(stderr, "panel_screenshots: cannot write %s\n", qPrintable(path));
        else
            std::printf("%s %dx%d\n", qPrintable(path), shot.width(), shot.height());
    }

private:
    QString m_folder;
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
        scene = std::make_unique<MenuBarScene>(*vm, [] {});
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
    Shooter shooter(QString::fromLocal8Bit(argv[1]));
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
        menus.addApp(
            { entry.key, entry.name, icon->path.toStdString(), icon->path2x.toStdString(), false });
    }
    menus.pin("terminal");
    menus.pin("browser");
    menus.pin("files");
    menus.addCategory("Accessories",
                      { "calculator", "charmap", "dictionary", "editor", "screenshot" });
    menus.addCategory("Graphics", { "camera", "photos", "graphics" });
    menus.addCategory("Office", { "calendar", "contacts", "mail", "office", "print" });
    menus.addCategory("Sound & Video", { "music", "video", "volume" });
    menus.addCategory("System", { "network", "software", "install", "users", "vpn" });
    for (const char* key : { "editor", "terminal", "calculator", "photos", "mail", "browser" })
        menus.addRecent(key);

    {
        UserDefaults::setLastMenu(int(Pomvar::MyApps));
        Scene s;
        s.start(menus);
        s.open();
        s.vm->setExpandedAppCat("Accessories", true);
        QTest::qWait(100);
        shooter.shoot(QStringLiteral("panel-my-apps.png"), s.panel());

        s.select(Pomvar::Recent);
        shooter.shoot(QStringLiteral("panel-recent.png"), s.panel());

        s.select(Pomvar::AllApps);
        MenuListView* all = s.view().menuView(Pomvar::AllApps);
        // The pointer over a row shows the hover highlight.
        const QModelIndex hovered = rowNamed(all->model(), QStringLiteral("Dictionary"));
        const QPoint over = all->viewport()->mapToGlobal(all->visualRect(hovered).center());
        QCursor::setPos(over);
        QTest::mouseMove(all->viewport(), all->viewport()->mapFromGlobal(over));
        shooter.shoot(QStringLiteral("panel-all-apps.png"), s.panel());

        // An app row's context menu, with its "App Categories" submenu open.
        const QModelIndex row = rowNamed(all->model(), QStringLiteral("Text Editor"));
        const QPoint at = all->viewport()->mapToGlobal(all->visualRect(row).center());
        QCursor::setPos(at);
        QTest::mouseMove(all->viewport(), all->viewport()->mapFromGlobal(at));
        Q_EMIT all->rowContextMenuRequested(row, at);
        QTest::qWait(200);
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (QAction* action : menu->actions()) {
                if (action->text() == QStringLiteral("App Categories")) {
                    menu->setActiveAction(action);
                    QTest::keyClick(menu, Qt::Key_Right);
                }
            }
        }
        shooter.shoot(QStringLiteral("panel-context-menu.png"), s.panel());
        closePopups();

        if (!s.panel().isVisible())
            s.open();
        auto* control = s.view().findChild<ControlMenu*>();
        // showMenu() returns when the menu closes: the shot is taken from a timer meanwhile.
        QTimer::singleShot(300, [&] {
            shooter.shoot(QStringLiteral("panel-control-menu.png"), s.panel());
            closePopups();
        });
        control->showMenu();
        s.panel().dismiss();
    }

    {
        UserDefaults::setLastMenu(int(Pomvar::MyApps));
        FakeMenus empty;
        for (const ScreenshotApp& entry : kApps) {
            const auto icon = ThemeIcons::named(QString::fromLatin1(entry.icon));
            empty.addApp({ entry.key,
                           entry.name,
                           icon->path.toStdString(),
                           icon->path2x.toStdString(),
                           false });
        }
        QCursor::setPos(tray);
        Scene s;
        s.start(empty);
        s.open();
        shooter.shoot(QStringLiteral("panel-my-apps-empty.png"), s.panel());
        s.select(Pomvar::Recent);
        shooter.shoot(QStringLiteral("panel-recent-empty.png"), s.panel());
        s.panel().dismiss();
    }
    return 0;
}
