#include "NotificationService.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace pomvar::test {

NotificationService::~NotificationService()
{
    m_service.kill();
    m_service.waitForFinished();
}

bool NotificationService::start()
{
    m_service.start(QStringLiteral("/usr/bin/python3"),
                    { QStringLiteral(POMVAR_TEST_SUPPORT_DIR "/notification_service.py"),
                      m_dir.filePath(QStringLiteral("shown.jsonl")) });
    return m_service.waitForReadyRead(10000) && m_service.readLine().trimmed() == "ready";
}

QStringList NotificationService::summaries() const
{
    return shown(QStringLiteral("summary"));
}

QStringList NotificationService::bodies() const
{
    return shown(QStringLiteral("body"));
}

QStringList NotificationService::shown(const QString& field) const
{
    QStringList values;
    QFile file(m_dir.filePath(QStringLiteral("shown.jsonl")));
    if (file.open(QIODevice::ReadOnly)) {
        while (!file.atEnd())
            values << QJsonDocument::fromJson(file.readLine()).object().value(field).toString();
    }
    return values;
}

} // namespace pomvar::test
