// pomvar: the front end. The start-up sequence runs before Qt's application object exists,
// so help, version and "already running" need no display.
#include "app/PomvarApp.h"
#include "model/PomvarViewModel.h"
#include "ui/MenuBarScene.h"

#include <QApplication>

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    pomvar::PomvarApp app(std::vector<std::string>(argv, argv + argc));

    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    // The name tray hosts show for the icon.
    QApplication::setApplicationDisplayName(QStringLiteral("Pomvar"));

    // The scene (tray icon and panel): its first use of app.vm() creates the view model.
    pomvar::MenuBarScene scene(app.vm(), [&app] { app.terminate(); });

    return QApplication::exec();
}
