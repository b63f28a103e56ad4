#include "ChildProcess.h"

namespace pomvar::test {

ChildOutcome runChild(const QString& program,
                      const QStringList& arguments,
                      int timeoutMs,
                      const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ChildOutcome outcome;
    outcome.finished = process.waitForFinished(timeoutMs);
    if (!outcome.finished) {
        process.kill();
        process.waitForFinished();
    }
    outcome.exitStatus = process.exitStatus();
    outcome.exitCode = process.exitCode();
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    return outcome;
}

} // namespace pomvar::test
