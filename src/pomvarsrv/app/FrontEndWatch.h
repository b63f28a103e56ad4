#pragma once

#include "pomvarsrv/app/ProcessWatch.h"

#include <QObject>
#include <QString>

namespace pomvar::srv {

// Cleans up after the front end that started this server. A front end that ends on its own
// removes its PID file; one that is killed (SIGKILL, the out-of-memory killer, a crash) cannot,
// and its PID file would refuse every later start. So when it ends, its PID file goes, if it
// still names it; the server goes on serving.
class FrontEndWatch : public QObject
{
    Q_OBJECT

public:
    FrontEndWatch(pid_t frontEnd, QString pidFile, QObject* parent = nullptr);

private:
    void ended(pid_t pid);

    QString m_pidFile;
    ProcessWatch m_process;
};

} // namespace pomvar::srv
