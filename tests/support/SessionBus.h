#pragma once

#include <QProcess>
#include <QString>

namespace pomvar::test {

// A private D-Bus session bus (dbus-daemon) of the test's own, gone with it.
class SessionBus
{
public:
    // Starts it in that environment (its activatable services are read from the XDG data
    // folders); false when dbus-daemon (package dbus) did not start.
    bool start(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    QString address() const { return m_address; }
    // Makes it this process's session bus: before Qt's first connection to one.
    void useInThisProcess() const;

private:
    QProcess m_daemon; // killed with the test
    QString m_address;
};

} // namespace pomvar::test
