#include "SessionBus.h"

namespace pomvar::test {

bool SessionBus::start(const QProcessEnvironment& environment)
{
    m_daemon.setProcessEnvironment(environment);
    m_daemon.start("dbus-daemon", { "--session", "--nofork", "--nopidfile", "--print-address=1" });
    if (!m_daemon.waitForReadyRead(10000))
        return false;
    m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
    return true;
}

void SessionBus::useInThisProcess() const
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

} // namespace pomvar::test
