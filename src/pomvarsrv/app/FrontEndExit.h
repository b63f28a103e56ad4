#pragma once

#include "pomvarsrv/app/ProcessWatch.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

namespace pomvar::srv {

// Waits until the front end is gone: its PID file removed and its process ended, with every
// socket it held, so that the next front end's probe cannot take its connection for a server. The
// front end quits by itself at its next update poll; one that has not within the grace time (it was
// not polling) is sent SIGTERM, on which it removes its PID file and exits. A PID file whose
// process is not the front end was left by one that crashed: it is removed, or no front end could
// start.
class FrontEndExit : public QObject
{
    Q_OBJECT

public:
    static constexpr int kGraceMs = 3000;

    // `program`: the front end's installed program file (the running one may be replaced since).
    FrontEndExit(QString pidFile,
                 const QString& program,
                 int graceMs = kGraceMs,
                 QObject* parent = nullptr);

    // The front end that started this server: waited for even when it wrote no PID file.
    void setStartedBy(pid_t pid) { m_startedBy = pid; }

    // Starts waiting: `gone` follows, at once when no front end runs.
    void wait();

Q_SIGNALS:
    void gone();

private:
    void check();
    // Whether the process runs the front end's program, replaced since or not.
    bool isFrontEnd(qint64 pid) const;

    QString m_pidFile;
    QString m_program; // its folder resolved, as the kernel names a running program
    int m_graceMs;
    QTimer m_poll;
    QElapsedTimer m_waited;
    pid_t m_startedBy = 0;
    ProcessWatch m_process;
    bool m_asked = false;
};

} // namespace pomvar::srv
