#include "log/Output.h"

#include "log/ProcessEnd.h"

#include <QByteArrayView>

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace pomvar {

namespace {

QtMessageHandler g_othersHandler = nullptr;

void writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (!context.category || !QByteArrayView(context.category).startsWith("pomvar.")) {
        g_othersHandler(type, context, message);
        return;
    }
    const QByteArray text = (message + u'\n').toUtf8();
    writeAll(type == QtWarningMsg ? STDERR_FILENO : STDOUT_FILENO,
             std::string_view(text.constData(), std::size_t(text.size())));
}

// Before main(): the start-up sequence prints before any Qt object exists.
void installMessageHandler()
{
    g_othersHandler = qInstallMessageHandler(writeMessage);
}

} // namespace

Q_CONSTRUCTOR_FUNCTION(installMessageHandler)

void writeLine(QtMsgType type, const QLoggingCategory& category, std::string_view line)
{
    if (!category.isEnabled(type))
        return;
    const QMessageLogger logger(nullptr, 0, nullptr, category.categoryName());
    const std::string text(line);
    switch (type) {
        case QtDebugMsg:
            logger.debug("%s", text.c_str());
            break;
        case QtWarningMsg:
            logger.warning("%s", text.c_str());
            break;
        default:
            logger.info("%s", text.c_str());
            break;
    }
}

void fatalStop(std::string_view message)
{
    std::string text = "Fatal error: ";
    text.append(message);
    text.push_back('\n');
    writeAll(STDERR_FILENO, text);
    // The PID file first: the stop must not refuse every later start.
    ProcessEnd::cleanUp();
    std::abort();
}

} // namespace pomvar
