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
    const bool finished = process.waitForFinished(timeoutMs);
    if (!finished) {
        process.kill();
        process.waitForFinished();
    }
    return { finished,
             process.exitStatus(),
             process.exitCode(),
             process.readAllStandardOutput(),
             process.readAllStandardError() };
}

} // namespace pomvar::test
