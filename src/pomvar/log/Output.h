#pragma once

#include <QLoggingCategory>

#include <sstream>
#include <string>
#include <string_view>

namespace pomvar {

#ifdef POMVAR_DIAGNOSTIC
inline constexpr bool kTracing = true;
#else
inline constexpr bool kTracing = false;
#endif

// The front end's lines go through Qt's logging, under the category of the library that writes
// them: pomvar.app, pomvar.ipc, pomvar.model, pomvar.tray, pomvar.ui (QT_LOGGING_RULES quiets
// one, once the application object has read it). The handler installed at start-up writes each
// exactly as given, warnings to standard error and the rest to standard output, one line in a
// single write, so lines from the IPC thread and the main thread never interleave; messages of
// other categories (Qt's own) keep the handler they had.
void writeLine(QtMsgType type, const QLoggingCategory& category, std::string_view line);

// A line written in every build, at the info level.
inline void printLine(const QLoggingCategory& category, std::string_view line)
{
    writeLine(QtInfoMsg, category, line);
}

// A line on standard error, at the warning level, in every build.
inline void printWarning(const QLoggingCategory& category, std::string_view line)
{
    writeLine(QtWarningMsg, category, line);
}

// Stops the process on a broken contract: the message goes to standard error, then abort().
[[noreturn]] void fatalStop(std::string_view message);

template <typename... Parts>
std::string concat(const Parts&... parts)
{
    std::ostringstream out;
    (out << ... << parts);
    return out.str();
}

// A trace line, at the debug level: written in a diagnostic build only. The parts are not even
// formatted otherwise.
template <typename... Parts>
void trace(const QLoggingCategory& category, const Parts&... parts)
{
    if constexpr (kTracing)
        writeLine(QtDebugMsg, category, concat(parts...));
}

} // namespace pomvar
