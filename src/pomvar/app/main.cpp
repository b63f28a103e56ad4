// pomvar: the front end. The start-up sequence runs before Qt's application object exists,
// so help, version and "already running" need no display.
#include "app/PomvarApp.h"
#include "model/PomvarViewModel.h"

#include <QApplication>

#include <string>
#include <vector>

int main(int argc, char** argv)
{
    pomvar::PomvarApp app(std::vector<std::string>(argv, argv + argc));

    QApplication application(argc, argv);
    application.setQuitOnLastWindowClosed(false);

    // The scene (tray icon and panel) is created here and given app.vm(); until then the view
    // model is created directly, which connects to the runtime server.
    app.vm();

    return QApplication::exec();
}
