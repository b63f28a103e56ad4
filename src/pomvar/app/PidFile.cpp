#include "app/PidFile.h"

#include "app/AppLog.h"
#include "app/SignalSafe.h"
#include "wire/UserPaths.h"

#include <QCoreApplication>
#include <QSaveFile>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace pomvar {

namespace {

char g_signalPidFilePath[PATH_MAX] = {};
// Whether this process wrote the file and has not removed it: only then is it ours to remove.
std::atomic<bool> g_owned = false;

} // namespace

std::string PidFile::getCacheDirPath()
{
    const std::string file = getPidFilePath();
    return file.substr(0, file.rfind('/'));
}

std::string PidFile::getPidFilePath()
{
    return paths::pidFile();
}

void PidFile::create()
{
    qint64 pid = QCoreApplication::applicationPid();
    trace(lcApp(), "Pomvar: Process ID (-1=no PID): ", pid);
    if (pid == -1) {
        pid = ::getpid();
        trace(lcApp(), "Pomvar: Process ID from C call: ", pid);
    }

    const std::string folder = getCacheDirPath();
    struct stat info;
    // Private to the user: the folder is made, but not the folders above it.
    if (::lstat(folder.c_str(), &info) != 0 && ::mkdir(folder.c_str(), 0700) != 0)
        trace(lcApp(),
              "⚠️ Pomvar: Failed to create folder under ",
              folder.substr(0, folder.rfind('/')),
              ": ",
              std::strerror(errno));

    // Written through a temporary file that then replaces the target.
    QSaveFile file(QString::fromStdString(getPidFilePath()));
    const QByteArray content = QByteArray::number(pid);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        trace(lcApp(), "⚠️ Pomvar: Cannot write pid file!");
    g_owned = true;
}

void PidFile::deleteFile()
{
    g_owned = false;
    if (::unlink(getPidFilePath().c_str()) != 0)
        trace(lcApp(), "Pomvar: Failed to delete pid file: ", std::strerror(errno));
}

void PidFile::prepareSignalHandlerPath()
{
    const std::string path = getPidFilePath();
    if (path.size() >= sizeof g_signalPidFilePath)
        fatalStop("Pomvar: the PID file path is too long");
    std::memcpy(g_signalPidFilePath, path.c_str(), path.size() + 1);
}

void PidFile::deleteFromSignalHandler() noexcept
{
    if (!g_owned.exchange(false) || g_signalPidFilePath[0] == '\0' ||
        ::unlink(g_signalPidFilePath) == 0)
        return;
    const int error = errno;
    if constexpr (kTracing)
        signal_safe::writeLine("Pomvar: Failed to delete pid file: ", ::strerrordesc_np(error));
}

} // namespace pomvar
