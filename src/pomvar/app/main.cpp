// pomvar: the front end. Help, version and "already running" are settled before Qt's application
// object exists, so they need no display.
#include "app/PlatformChoice.h"
#include "app/PomvarApp.h"
#include "i18n/Translations.h"
#include "model/PomvarViewModel.h"
#include "ui/MenuBarScene.h"
#include "ui/TrayIcon.h"

#include <QApplication>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
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

    // The display, fonts, translations and the hidden scene are made ready while the server
    // starts; the scene's functions are first called once the start-up sequence has returned.
    // Declared in the reverse order of their ends: the view model outlives the application object,
    // which outlives the scene's widgets.
    std::optional<pomvar::PomvarApp> app;
    std::optional<QApplication> application;
    std::optional<pomvar::MenuBarScene> scene;
    app.emplace(std::vector<std::string>(argv, argv + argc), [&] {
        application.emplace(qtArgc, qtArgv.data());
        QApplication::setQuitOnLastWindowClosed(false);
        // The name tray hosts show for the icon, and the Wayland app id.
        QApplication::setApplicationDisplayName(QStringLiteral("Pomvar"));
        QGuiApplication::setDesktopFileName(pomvar::TrayIcon::applicationId);
        // After the command line's own outputs: they stay English.
        pomvar::Translations::install(
            pomvar::Translations::folderFor(QCoreApplication::applicationDirPath(), 1));
        scene.emplace([&app]() -> pomvar::PomvarViewModel& { return app->vm(); },
                      [&app] { app->terminate(); });
    });
    // The tray icon; the view model is created right after it is shown.
    scene->show();

    return QApplication::exec();
}
