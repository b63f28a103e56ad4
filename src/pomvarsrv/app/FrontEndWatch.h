#pragma once

#include "pomvarsrv/app/ProcessWatch.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace pomvar::srv {

// Cleans up after the front ends this server serves. A front end that ends on its own removes
// its PID file; one that is killed (SIGKILL, the out-of-memory killer, a crash) cannot, and its
// PID file would refuse every later start. So the server watches the front end that started it,
// and then whichever the PID file names (a front end started later talks to this server too);
// when it ends, its PID file goes if it still names it. The server goes on serving.
class FrontEndWatch : public QObject
{
    Q_OBJECT

public:
    FrontEndWatch(pid_t startedBy, QString pidFile, QObject* parent = nullptr);

private:
    // Watches the process the PID file names now, and the file's folder once it exists.
    void follow();
    void ended(pid_t pid);
    pid_t named() const;

    QString m_pidFile;
    QFileSystemWatcher m_folders;
    ProcessWatch m_process;
};

} // namespace pomvar::srv
