#pragma once

#include "pomvarsrv/providers/SearchProvider.h"
#include "pomvarsrv/search/SearchRow.h"

#include <QObject>

#include <vector>

namespace pomvar::srv {

// Asks the desktop's search providers over D-Bus (org.gnome.Shell.SearchProvider2) for each new
// query, all at once and asynchronously: a provider has kDeadlineMs from the question to its last
// answer, and what comes later is dropped, so a slow or dead provider costs nothing but its own
// rows. Only the latest query's answers are given. Activating a result hands it to its provider.
class SearchProviders : public QObject
{
    Q_OBJECT

public:
    static constexpr int kDeadlineMs = 150;
    static constexpr int kShownResults = 5;

    using QObject::QObject;

    // The providers asked, in this order.
    void setProviders(std::vector<SearchProvider> providers);
    const std::vector<SearchProvider>& providers() const { return m_providers; }

    void search(const QString& query);
    void activate(const QString& desktopId, const QString& resultId, const QString& query);

Q_SIGNALS:
    // A provider's first results for `query` (none when it found nothing), `order` its place in
    // providers(): rows of kind providerResult, without icons.
    void resultsReady(const QString& query, int order, std::vector<SearchRow> rows);

private:
    void askMetas(const QString& query, int order, const QStringList& ids, int serial, int left);

    std::vector<SearchProvider> m_providers;
    int m_serial = 0;
};

} // namespace pomvar::srv
