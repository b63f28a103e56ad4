#include "app/PomvarApp.h"

#include "app/AppLog.h"
#include "app/CommandLine.h"
#include "app/Execute.h"
#include "app/PidFile.h"
#include "app/SignalSafe.h"
#include "log/ProcessEnd.h"
#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"
#include "wire/RuntimeEndpoint.h"

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <climits>
#include <csignal>
#include <cstdlib>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

namespace pomvar {

namespace {

// Interrupted, terminated or trapped: the PID file goes, then the process exits with status 1.
void onSignal(int signal)
{
    if constexpr (kTracing)
        signal_safe::writeLine("Pomvar: Received signal: ", static_cast<long>(signal));
    PidFile::deleteFromSignalHandler();
    ::_exit(1);
}

// A hang-up (the terminal closed) or a quit: the PID file goes, then the signal ends the process
// as it would have without a handler.
void onEndingSignal(int signal)
{
    PidFile::deleteFromSignalHandler();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

PomvarApp::PomvarApp(std::vector<std::string> arguments,
                     const std::function<void()>& whileServerStarts)
    : m_arguments(std::move(arguments))
    , m_srv{ "localhost", 50818 }
{
    initExecEnv();
    const std::vector<std::string> args = processCmdLineArgs(m_arguments);
    trace(lcApp(), "Pomvar: Waiting for Pomvar/RT to start...");
    launchPomvarRT(args);
    // The server loads in its own process meanwhile; before the PID file, so a display that
    // cannot be opened leaves none behind.
    if (whileServerStarts)
        whileServerStarts();
    PidFile::create();
    // Every later end removes the file: a fatal stop, a refused connection, exit() (Qt's, when
    // the display connection is lost).
    ProcessEnd::setCleanup(&PidFile::deleteFromSignalHandler);
    waitForRTStartup();
}

PomvarApp::~PomvarApp() = default;

void PomvarApp::initExecEnv()
{
    PidFile::prepareSignalHandlerPath();
    for (const int signal : { SIGINT, SIGTERM, SIGTRAP })
        std::signal(signal, onSignal);
    for (const int signal : { SIGHUP, SIGQUIT })
        std::signal(signal, onEndingSignal);

    struct stat info;
    if (::stat(PidFile::getPidFilePath().c_str(), &info) == 0) {
        printLine(lcApp(), "Pomvar for Linux is already running.");
        std::exit(0);
    }
}

PomvarViewModel& PomvarApp::vm()
{
    if (!m_vm) {
        m_vm = std::make_unique<PomvarViewModel>();
        m_vm->setTerminateApplication([this] { terminate(); });
    }
    return *m_vm;
}

void PomvarApp::terminate()
{
    m_appDelegate.applicationWillTerminate();
    if (QCoreApplication::instance() && QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(0);
}

std::string PomvarApp::runtimeServerPath()
{
    char self[PATH_MAX];
    const ssize_t size = ::readlink("/proc/self/exe", self, sizeof self - 1);
    if (size <= 0)
        fatalStop("Pomvar: cannot find the program's own folder");
    const std::string program(self, static_cast<std::size_t>(size));
    const std::string binDir = program.substr(0, program.find_last_of('/'));
    return binDir + "/../libexec/pomvar/pomvarsrv";
}

void PomvarApp::launchPomvarRT(const std::vector<std::string>& args)
{
    const std::string server = runtimeServerPath();
    QStringList arguments;
    for (const std::string& arg : args)
        arguments.append(QString::fromStdString(arg));
    // Named in the server's environment only: it waits for this process's end at an update's
    // restart, and removes the PID file of one that was killed.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(wire::kFrontEndPidVariable),
                       QString::number(::getpid()));
    QProcess process;
    process.setProgram(QString::fromStdString(server));
    process.setArguments(arguments);
    process.setProcessEnvironment(environment);
    // Not our child: it inherits the working directory and the standard streams, runs in a
    // session of its own, is never waited for and outlives us.
    if (!process.startDetached())
        fatalStop(concat(server, ": ", process.errorString().toStdString()));
}

void PomvarApp::waitForRTStartup()
{
    const std::string probe = concat("lsof -i @", m_srv.address, ":", m_srv.port);
    for (;;) {
        try {
            if (!execute(probe).empty()) {
                trace(lcApp(), "Pomvar/RT is running");
                return;
            }
        } catch (const CommandError& error) {
            if (error.kind() != CommandError::Kind::commandFailed)
                break;
        } catch (const std::exception&) {
            break;
        }
    }

    trace(lcApp(), "Error running 'lsof' command, cannot detect if Pomvar/RT is running");
    vm().sendMessage(request::plain(request::quit));
    terminate();
    std::exit(1);
}

} // namespace pomvar
