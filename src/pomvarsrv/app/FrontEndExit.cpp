#include "pomvarsrv/app/FrontEndExit.h"

#include "pomvarsrv/app/ServerLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <climits>
#include <csignal>
#include <unistd.h>

namespace pomvar::srv {

namespace {

constexpr int kPollMs = 50;

} // namespace

FrontEndExit::FrontEndExit(QString pidFile, const QString& program, int graceMs, QObject* parent)
    : QObject(parent)
    , m_pidFile(std::move(pidFile))
    , m_program(QFileInfo(QFileInfo(program).absolutePath()).canonicalFilePath() + u'/' +
                QFileInfo(program).fileName())
    , m_graceMs(graceMs)
{
    m_poll.setInterval(kPollMs);
    connect(&m_poll, &QTimer::timeout, this, &FrontEndExit::check);
    connect(&m_process, &ProcessWatch::ended, this, &FrontEndExit::check);
}

void FrontEndExit::wait()
{
    m_waited.start();
    m_asked = false;
    if (m_startedBy > 0)
        m_process.watch(m_startedBy);
    m_poll.start();
    check();
}

bool FrontEndExit::isFrontEnd(qint64 pid) const
{
    if (pid <= 0)
        return false;
    char target[PATH_MAX];
    const QByteArray link = "/proc/" + QByteArray::number(pid) + "/exe";
    const ssize_t size = ::readlink(link.constData(), target, sizeof target);
    if (size <= 0)
        return false; // gone, or a zombie
    QString running = QString::fromUtf8(target, size);
    running.remove(QStringLiteral(" (deleted)"));
    return running == m_program;
}

void FrontEndExit::check()
{
    QFile file(m_pidFile);
    if (file.open(QIODevice::ReadOnly)) {
        const qint64 named = file.readAll().trimmed().toLongLong();
        if (!isFrontEnd(named)) {
            qCInfo(lcApp) << "removing the PID file of a front end that is not running" << named;
            file.remove();
        } else if (!m_process.isRunning()) {
            m_process.watch(static_cast<pid_t>(named));
        }
    }
    // Until its process has ended, its connection may still be open.
    if (m_process.isRunning()) {
        if (!m_asked && m_waited.elapsed() >= m_graceMs) {
            qCInfo(lcApp) << "the front end" << m_process.pid() << "did not quit: asking it to";
            ::kill(m_process.pid(), SIGTERM);
            m_asked = true;
        }
        return;
    }
    m_poll.stop();
    Q_EMIT gone();
}

} // namespace pomvar::srv
