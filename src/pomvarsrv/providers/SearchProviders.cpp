#include "pomvarsrv/providers/SearchProviders.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QElapsedTimer>
#include <QRegularExpression>

namespace pomvar::srv {

namespace {

constexpr const char* kInterface = "org.gnome.Shell.SearchProvider2";

QStringList termsOf(const QString& query)
{
    static const QRegularExpression space(QStringLiteral("\\s+"));
    return query.split(space, Qt::SkipEmptyParts);
}

QDBusMessage call(const SearchProvider& provider, const char* method, const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        provider.busName, provider.objectPath, QLatin1String(kInterface), QLatin1String(method));
    message.setArguments(arguments);
    return message;
}

} // namespace

void SearchProviders::setProviders(std::vector<SearchProvider> providers)
{
    m_providers = std::move(providers);
}

void SearchProviders::search(const QString& query)
{
    const int serial = ++m_serial;
    const QStringList terms = termsOf(query);
    if (terms.isEmpty() || m_providers.empty())
        return;
    QElapsedTimer asked;
    asked.start();
    for (int order = 0; order < int(m_providers.size()); ++order) {
        const QDBusMessage message =
            call(m_providers[std::size_t(order)], "GetInitialResultSet", { terms });
        auto* watcher = new QDBusPendingCallWatcher(
            QDBusConnection::sessionBus().asyncCall(message, kDeadlineMs), this);
        connect(watcher,
                &QDBusPendingCallWatcher::finished,
                this,
                [this, watcher, query, order, serial, asked] {
                    watcher->deleteLater();
                    const int left = kDeadlineMs - int(asked.elapsed());
                    const QDBusPendingReply<QStringList> ids = *watcher;
                    if (serial != m_serial || ids.isError() || left <= 0)
                        return;
                    askMetas(query, order, ids.value().mid(0, kShownResults), serial, left);
                });
    }
}

void SearchProviders::askMetas(const QString& query,
                               int order,
                               const QStringList& ids,
                               int serial,
                               int left)
{
    if (ids.isEmpty()) {
        Q_EMIT resultsReady(query, order, {});
        return;
    }
    const SearchProvider& provider = m_providers[std::size_t(order)];
    const QString source = provider.desktopId;
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call(provider, "GetResultMetas", { ids }), left),
        this);
    connect(watcher,
            &QDBusPendingCallWatcher::finished,
            this,
            [this, watcher, query, order, serial, source] {
                watcher->deleteLater();
                const QDBusMessage reply = watcher->reply();
                if (serial != m_serial || reply.type() != QDBusMessage::ReplyMessage ||
                    reply.arguments().isEmpty())
                    return;
                // aa{sv}: one dictionary per result, "id" and "name" at least.
                std::vector<SearchRow> rows;
                const auto metas = reply.arguments().constFirst().value<QDBusArgument>();
                metas.beginArray();
                while (!metas.atEnd()) {
                    QVariantMap meta;
                    metas >> meta;
                    const QString id = meta.value(QStringLiteral("id")).toString();
                    if (!id.isEmpty())
                        rows.push_back({ id,
                                         meta.value(QStringLiteral("name")).toString(),
                                         meta.value(QStringLiteral("description")).toString(),
                                         {},
                                         {},
                                         SearchRow::Kind::providerResult,
                                         source });
                }
                metas.endArray();
                Q_EMIT resultsReady(query, order, std::move(rows));
            });
}

void SearchProviders::activate(const QString& desktopId,
                               const QString& resultId,
                               const QString& query)
{
    for (const SearchProvider& provider : m_providers)
        if (provider.desktopId == desktopId)
            QDBusConnection::sessionBus().asyncCall(
                call(provider, "ActivateResult", { resultId, termsOf(query), 0u }));
}

} // namespace pomvar::srv
