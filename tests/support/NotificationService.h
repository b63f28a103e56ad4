#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace pomvar::test {

// The desktop's notification service, stood in for by notification_service.py on the session
// bus of this process's environment (a SessionBus): what programs post is recorded.
class NotificationService
{
public:
    ~NotificationService();
    // False when it did not take the service's name.
    bool start();
    // The summaries of the notifications posted so far, in order.
    QStringList summaries() const;
    // Their bodies, in order.
    QStringList bodies() const;

private:
    QStringList shown(const QString& field) const;

    QTemporaryDir m_dir;
    QProcess m_service;
};

} // namespace pomvar::test
