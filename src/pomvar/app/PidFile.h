#pragma once

#include <string>

namespace pomvar {

// The PID file: this process's number in the user's runtime folder (UserPaths). Its mere
// presence marks a running front end. Used only through its static operations.
class PidFile
{
public:
    PidFile() = delete;

    // Writes the file (the program folder is created if missing, but not its parents).
    // Failures are traced only.
    static void create();
    // Removes the file. Failures, a missing file included, are traced only.
    static void deleteFile();
    // <runtime folder>/pomvar/pomvar.pid
    static std::string getPidFilePath();

    // Computes the path once, for deleteFromSignalHandler(). Call before installing handlers.
    static void prepareSignalHandlerPath();
    // deleteFile() for signal context: async-signal-safe; only a file this process wrote, and
    // only once.
    static void deleteFromSignalHandler() noexcept;

private:
    // <runtime folder>/pomvar
    static std::string getCacheDirPath();
};

} // namespace pomvar
