#include "pomvarsrv/app/ProcessWatch.h"

#include <QSocketNotifier>

#include <sys/syscall.h>
#include <unistd.h>

namespace pomvar::srv {

ProcessWatch::ProcessWatch(QObject* parent)
    : QObject(parent)
{}

ProcessWatch::~ProcessWatch()
{
    stop();
}

bool ProcessWatch::watch(pid_t pid)
{
    stop();
    m_pid = pid;
    m_fd = pid > 0 ? int(::syscall(SYS_pidfd_open, pid, 0)) : -1;
    if (m_fd < 0)
        return false;
    m_notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        const pid_t ended = m_pid;
        stop();
        Q_EMIT this->ended(ended);
    });
    return true;
}

void ProcessWatch::stop()
{
    delete m_notifier;
    m_notifier = nullptr;
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

} // namespace pomvar::srv
