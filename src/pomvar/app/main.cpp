// pomvar: the front end. The start-up sequence runs before Qt's application object exists,
// so help, version and "already running" need no display.
#include "app/PlatformChoice.h"
#include "app/PomvarApp.h"
#include "i18n/Translations.h"
#include "model/PomvarViewModel.h"
#include "ui/MenuBarScene.h"
#include "ui/TrayIcon.h"

#include <QApplication>

#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    pomvar::PomvarApp app(std::vector<std::string>(argv, argv + argc));

    // The platform goes on Qt's command line rather than in the environment, so the programs
    // the server starts keep the session's own.
    std::string platform = pomvar::PlatformChoice::platform([](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    });
    std::string platformFlag = "-platform";
    std::vector<char*> qtArgv(argv, argv + argc);
    if (!platform.empty()) {
        qtArgv.insert(qtArgv.begin() + 1, { platformFlag.data(), platform.data() });
    }
    int qtArgc = int(qtArgv.size());
    qtArgv.push_back(nullptr);

    QApplication application(qtArgc, qtArgv.data());
    application.setQuitOnLastWindowClosed(false);
    // The name tray hosts show for the icon, and the Wayland app id.
    QApplication::setApplicationDisplayName(QStringLiteral("Pomvar"));
    QGuiApplication::setDesktopFileName(pomvar::TrayIcon::applicationId);
    // After the start-up sequence: its command-line outputs stay English.
    pomvar::Translations::install(
        pomvar::Translations::folderFor(QCoreApplication::applicationDirPath(), 1));

    // The scene (tray icon and panel): its first use of app.vm() creates the view model.
    pomvar::MenuBarScene scene(app.vm(), [&app] { app.terminate(); });

    return QApplication::exec();
}
