#pragma once

#include <QObject>

#include <sys/types.h>

class QSocketNotifier;

namespace pomvar::srv {

// Tells when a process has ended, through a pidfd: the kernel reports the end once the process
// has let go of everything, its open files and sockets too. Watching by number alone cannot
// tell an exiting process from a gone one, nor a gone one from a new one given its number.
class ProcessWatch : public QObject
{
    Q_OBJECT

public:
    explicit ProcessWatch(QObject* parent = nullptr);
    ~ProcessWatch() override;

    // Starts watching `pid`, instead of any process watched before. False when there is no
    // such process: it has ended already.
    bool watch(pid_t pid);
    pid_t pid() const { return m_pid; }
    bool isRunning() const { return m_fd >= 0; }

Q_SIGNALS:
    void ended(pid_t pid);

private:
    void stop();

    pid_t m_pid = 0;
    int m_fd = -1;
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace pomvar::srv
