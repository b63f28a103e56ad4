#pragma once

#include "pomvarsrv/search/SearchRow.h"

#include <QString>

#include <map>
#include <optional>
#include <vector>

namespace pomvar::srv {

// The search window's rows for one query, in sections that arrive at different times: the
// calculator's answer first, then the apps, then each search provider's results under its name
// and icon, the providers in their own order whatever order they answer in.
class SearchSections
{
public:
    // A new query and its apps; the other sections are emptied.
    void reset(const QString& query, std::vector<SearchRow> apps);
    const QString& query() const { return m_query; }

    void setCalculation(std::optional<SearchRow> answer) { m_calculation = std::move(answer); }
    // A provider's results, `order` its place among the providers; nothing shows for none.
    void setProviderResults(int order, SearchRow header, std::vector<SearchRow> results);

    std::vector<SearchRow> rows() const;

private:
    QString m_query;
    std::optional<SearchRow> m_calculation;
    std::vector<SearchRow> m_apps;
    std::map<int, std::vector<SearchRow>> m_providers; // header first
};

} // namespace pomvar::srv
