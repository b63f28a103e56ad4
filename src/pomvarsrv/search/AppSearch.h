#pragma once

#include "pomvarsrv/model/AppCategory.h"
#include "pomvarsrv/model/DesktopApp.h"
#include "pomvarsrv/search/SearchIndex.h"
#include "pomvarsrv/search/SearchRow.h"

#include <QString>
#include <QStringList>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

class ServerModel;

// The installed apps as their desktop entries describe them, indexed for searching, and the
// queries the server's windows ask: the search window's rows, an app's action rows and the
// organizer's picker. The model gives what the menus show (names, icons, Recent, use); the apps
// hidden from Pomvar are found by none of them.
class AppSearch
{
public:
    using Action = std::pair<QString, QString>; // action id, localised name

    explicit AppSearch(const ServerModel& model);

    // The entries in the catalogue's order, indexed for the search.
    void setEntries(std::vector<DesktopApp> entries);
    const std::vector<DesktopApp>& entries() const { return m_entries; }
    const DesktopApp* entryOf(const std::string& appkey) const;

    // The search window: Recent for an empty query, else the best matches.
    std::vector<SearchRow> rows(const QString& query) const;
    // An app's desktop actions as rows under the app's name and icon.
    std::vector<SearchRow> actionRows(const QString& appkey,
                                      const std::vector<Action>& actions) const;
    // The organizer's picker: the apps matching a query as the search ranks them; all, in menu
    // order, for an empty one.
    std::vector<std::string> pickerApps(const QString& query) const;
    // The welcome's "Start with categories": the installed apps in categories named after the
    // freedesktop categories their entries list (`categoriesById`, by desktop file id).
    std::vector<AppCategory> startingCategories(
        const std::map<std::string, QStringList>& categoriesById) const;

    static constexpr std::size_t kShownRows = 50;

private:
    SearchRow rowOf(const std::string& appkey, const DesktopApp* entry = nullptr) const;
    std::vector<std::size_t> rank(const QString& query) const;

    const ServerModel& m_model;
    std::vector<DesktopApp> m_entries;
    SearchIndex m_index; // over m_entries, in their order
};

} // namespace pomvar::srv
