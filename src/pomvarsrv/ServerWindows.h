#pragma once

#include "DesktopApp.h"
#include "NewCategoryPrompt.h"
#include "SearchResults.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pomvar::srv {

class AboutWindow;
class AppInfoWindow;
class CategoryInfoWindow;
class OrganizerWindow;
class SearchIndex;
class SearchWindow;
class ServerModel;
class Updates;
class UpdatesWindow;
class WelcomeWindow;

// Owns every window of the server: the search window, the organizer, the new category prompt,
// and the info, about, welcome and updates windows. Each is made at its first request, then
// shown again, raised and switched to what is asked. It gathers what they show from the model,
// the desktop entries, the search index and the updates, and carries out what the user chooses
// in them.
class ServerWindows : public QObject
{
    Q_OBJECT

public:
    // The app, or one of its desktop actions.
    using Launch = std::function<void(const QString& appkey, const QString& action)>;

    // `entries` are the desktop entries in the order of `search`; both change with the catalogue.
    ServerWindows(ServerModel& model,
                  Updates& updates,
                  const SearchIndex& search,
                  const std::vector<DesktopApp>& entries,
                  Launch launch,
                  QObject* parent = nullptr);
    ~ServerWindows() override;

    void showSearch();
    // The organizer on a pane (OrganizerDlgMode) and an item (a category or an app key).
    void showOrganizer(int pane, const QString& itemkey);
    // Asks for a new category's name, then files the app into it.
    void askNewCategory(const QString& appkey) { m_prompt.ask(appkey); }
    void showAppInfo(const QString& appkey);
    void showCategoryInfo(const QString& appcat);
    void showAbout();
    void showWelcome();
    // Re-reads the installed version first.
    void showUpdates();

private:
    void refreshUpdates();
    void startWithCategories();
    std::vector<SearchRow> searchRows(const QString& query) const;
    std::vector<SearchRow> actionRows(const QString& appkey) const;
    // The app's row; its entry is looked up when not given.
    SearchRow rowOf(const std::string& appkey, const DesktopApp* entry = nullptr) const;
    const DesktopApp* entryOf(const std::string& appkey) const;
    // The organizer's picker: the apps matching a query as the search ranks them; all, in menu
    // order, for an empty one.
    std::vector<std::string> pickerApps(const QString& query) const;

    ServerModel& m_model;
    Updates& m_updates;
    const SearchIndex& m_search;
    const std::vector<DesktopApp>& m_entries;
    Launch m_launch;
    NewCategoryPrompt m_prompt;
    std::unique_ptr<SearchWindow> m_searchWindow;
    std::unique_ptr<OrganizerWindow> m_organizer;
    std::unique_ptr<AppInfoWindow> m_appInfo;
    std::unique_ptr<CategoryInfoWindow> m_categoryInfo;
    std::unique_ptr<AboutWindow> m_about;
    std::unique_ptr<WelcomeWindow> m_welcome;
    std::unique_ptr<UpdatesWindow> m_updatesWindow;
};

} // namespace pomvar::srv
