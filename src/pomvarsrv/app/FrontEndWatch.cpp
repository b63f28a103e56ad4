#include "pomvarsrv/app/FrontEndWatch.h"

#include "pomvarsrv/app/ServerLog.h"

#include <QFile>

namespace pomvar::srv {

FrontEndWatch::FrontEndWatch(pid_t frontEnd, QString pidFile, QObject* parent)
    : QObject(parent)
    , m_pidFile(std::move(pidFile))
{
    connect(&m_process, &ProcessWatch::ended, this, &FrontEndWatch::ended);
    if (frontEnd > 0 && !m_process.watch(frontEnd))
        ended(frontEnd);
}

void FrontEndWatch::ended(pid_t pid)
{
    QFile file(m_pidFile);
    if (!file.open(QIODevice::ReadOnly) || file.readAll().trimmed().toLongLong() != pid)
        return; // it removed its own, or a later front end wrote its own
    file.close();
    if (file.remove())
        qCWarning(lcApp) << "the front end" << pid << "ended without removing its PID file:"
                         << "removed it";
}

} // namespace pomvar::srv
