#pragma once

#include <QProcess>

namespace pomvar::test {

// What a child process did, run to its end.
struct ChildOutcome
{
    bool finished = false; // false: it did not end in time and was killed
    QProcess::ExitStatus exitStatus = QProcess::NormalExit;
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    // Stopped by a signal (abort() on a fatal stop), as opposed to exiting.
    bool crashed() const { return finished && exitStatus == QProcess::CrashExit; }
    bool exitedWith(int code) const
    {
        return finished && exitStatus == QProcess::NormalExit && exitCode == code;
    }
};

// Runs `program` and waits up to `timeoutMs` for it to end, killing it after that.
ChildOutcome runChild(
    const QString& program,
    const QStringList& arguments,
    int timeoutMs = 20000,
    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

} // namespace pomvar::test
