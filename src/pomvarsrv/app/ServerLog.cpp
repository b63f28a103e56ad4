#include "pomvarsrv/app/ServerLog.h"

#include <cstdio>

namespace pomvar::srv {

Q_LOGGING_CATEGORY(lcApp, "pomvarsrv.app")

namespace {

void writeMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    const char* level = "";
    switch (type) {
        case QtWarningMsg:
            level = "warning: ";
            break;
        case QtCriticalMsg:
        case QtFatalMsg:
            level = "error: ";
            break;
        default:
            break;
    }
    std::fprintf(stderr, "pomvarsrv: %s%s\n", level, message.toLocal8Bit().constData());
    std::fflush(stderr);
}

} // namespace

void installServerLog()
{
    qInstallMessageHandler(writeMessage);
}

} // namespace pomvar::srv
