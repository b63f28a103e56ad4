#include "pomvarsrv/search/AppSearch.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/model/WelcomeCategories.h"

#include <algorithm>
#include <ctime>

namespace pomvar::srv {

AppSearch::AppSearch(const ServerModel& model)
    : m_model(model)
{}

void AppSearch::setEntries(std::vector<DesktopApp> entries)
{
    m_index.setApps(entries);
    m_entries = std::move(entries);
}

const DesktopApp* AppSearch::entryOf(const std::string& appkey) const
{
    const auto found = std::find_if(
        m_entries.begin(), m_entries.end(), [&](const auto& e) { return e.id == appkey; });
    return found == m_entries.end() ? nullptr : &*found;
}

std::vector<std::size_t> AppSearch::rank(const QString& query) const
{
    return m_index.rank(query, m_model.store().uses(std::time(nullptr)));
}

SearchRow AppSearch::rowOf(const std::string& appkey, const DesktopApp* entry) const
{
    SearchRow row{ QString::fromStdString(appkey), {}, {}, {}, {} };
    if (const AppEntry* app = m_model.apps().find(appkey)) {
        row.name = QString::fromStdString(app->name);
        row.icon = QString::fromStdString(app->iconPath);
        row.icon2x = QString::fromStdString(app->iconPath2x);
    }
    if (!entry)
        entry = entryOf(appkey);
    if (entry)
        row.detail = entry->genericName.isEmpty() ? entry->comment : entry->genericName;
    return row;
}

std::vector<SearchRow> AppSearch::rows(const QString& query) const
{
    std::vector<SearchRow> rows;
    if (query.trimmed().isEmpty()) {
        for (const std::string& appkey : m_model.store().recent())
            if (m_model.isShown(appkey))
                rows.push_back(rowOf(appkey));
        return rows;
    }
    const auto order = rank(query);
    for (std::size_t i = 0; i < order.size() && rows.size() < kShownRows; ++i) {
        const DesktopApp& entry = m_entries[order[i]];
        if (!m_model.store().isHidden(entry.id))
            rows.push_back(rowOf(entry.id, &entry));
    }
    return rows;
}

std::vector<SearchRow> AppSearch::actionRows(const QString& appkey,
                                             const std::vector<Action>& actions) const
{
    std::vector<SearchRow> rows;
    const SearchRow app = rowOf(appkey.toStdString());
    for (const auto& [action, name] : actions)
        rows.push_back({ action, name, app.name, app.icon, app.icon2x, SearchRow::Kind::action });
    return rows;
}

std::vector<std::string> AppSearch::pickerApps(const QString& query) const
{
    std::vector<std::string> keys;
    if (query.trimmed().isEmpty()) {
        for (const AppEntry& app : m_model.apps().all())
            if (!m_model.store().isHidden(app.key))
                keys.push_back(app.key);
        return keys;
    }
    for (const std::size_t at : rank(query))
        if (!m_model.store().isHidden(m_entries[at].id))
            keys.push_back(m_entries[at].id);
    return keys;
}

std::vector<AppCategory> AppSearch::startingCategories(
    const std::map<std::string, QStringList>& categoriesById) const
{
    std::vector<WelcomeCategories::App> apps;
    for (const AppEntry& app : m_model.apps().all()) {
        const auto found = categoriesById.find(app.key);
        if (found != categoriesById.end())
            apps.emplace_back(app.key, found->second);
    }
    return WelcomeCategories::from(apps);
}

} // namespace pomvar::srv
