#include "pomvarsrv/search/SearchSections.h"

namespace pomvar::srv {

void SearchSections::reset(const QString& query, std::vector<SearchRow> apps)
{
    m_query = query;
    m_calculation.reset();
    m_apps = std::move(apps);
    m_providers.clear();
}

void SearchSections::setProviderResults(int order, SearchRow header, std::vector<SearchRow> results)
{
    if (results.empty()) {
        m_providers.erase(order);
        return;
    }
    header.kind = SearchRow::Kind::providerHeader;
    results.insert(results.begin(), std::move(header));
    m_providers[order] = std::move(results);
}

std::vector<SearchRow> SearchSections::rows() const
{
    std::vector<SearchRow> rows;
    if (m_calculation)
        rows.push_back(*m_calculation);
    rows.insert(rows.end(), m_apps.begin(), m_apps.end());
    for (const auto& [order, group] : m_providers)
        rows.insert(rows.end(), group.begin(), group.end());
    return rows;
}

} // namespace pomvar::srv
