#include "ServerWindows.h"

#include "AboutWindow.h"
#include "AppInfoWindow.h"
#include "CategoryInfoWindow.h"
#include "Launcher.h"
#include "OrganizerWindow.h"
#include "SearchIndex.h"
#include "SearchWindow.h"
#include "ServerLog.h"
#include "ServerModel.h"
#include "Updates.h"
#include "UpdatesWindow.h"
#include "WelcomeCategories.h"
#include "WelcomeWindow.h"
#include "wire/Protocol.h"

#include <algorithm>
#include <ctime>

namespace pomvar::srv {

ServerWindows::ServerWindows(ServerModel& model,
                             Updates& updates,
                             const SearchIndex& search,
                             const std::vector<DesktopApp>& entries,
                             Launch launch,
                             QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_updates(updates)
    , m_search(search)
    , m_entries(entries)
    , m_launch(std::move(launch))
    , m_prompt(model)
{
    connect(&m_updates, &Updates::installedChanged, this, &ServerWindows::refreshUpdates);
}

ServerWindows::~ServerWindows() = default;

void ServerWindows::showSearch()
{
    qCInfo(lcServer) << "app-search requested: showing the search window";
    if (!m_searchWindow) {
        m_searchWindow = std::make_unique<SearchWindow>(
            [this](const QString& query) { return searchRows(query); },
            [this](const QString& appkey) { return actionRows(appkey); });
        connect(m_searchWindow.get(),
                &SearchWindow::launchRequested,
                this,
                [this](const QString& appkey) { m_launch(appkey, {}); });
        connect(m_searchWindow.get(), &SearchWindow::actionRequested, this, m_launch);
    }
    m_searchWindow->present();
}

void ServerWindows::showOrganizer(int pane, const QString& itemkey)
{
    qCInfo(lcServer) << "organizer requested, pane" << pane << "item" << itemkey;
    if (!m_organizer) {
        m_organizer = std::make_unique<OrganizerWindow>(
            m_model,
            [this](const QString& query) { return pickerApps(query); },
            [this](const std::string& appkey) {
                const DesktopApp* entry = entryOf(appkey);
                return entry ? entry->genericName : QString();
            });
        connect(
            m_organizer.get(), &OrganizerWindow::infoRequested, this, &ServerWindows::showAppInfo);
    }
    m_organizer->present(pane, itemkey);
}

std::vector<std::string> ServerWindows::pickerApps(const QString& query) const
{
    std::vector<std::string> keys;
    if (query.trimmed().isEmpty()) {
        for (const AppEntry& app : m_model.apps().all())
            keys.push_back(app.key);
        return keys;
    }
    for (const std::size_t at : m_search.rank(query, m_model.store().uses(std::time(nullptr))))
        keys.push_back(m_entries[at].id);
    return keys;
}

const DesktopApp* ServerWindows::entryOf(const std::string& appkey) const
{
    const auto found = std::find_if(
        m_entries.begin(), m_entries.end(), [&](const auto& e) { return e.id == appkey; });
    return found == m_entries.end() ? nullptr : &*found;
}

SearchRow ServerWindows::rowOf(const std::string& appkey, const DesktopApp* entry) const
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

std::vector<SearchRow> ServerWindows::searchRows(const QString& query) const
{
    constexpr std::size_t kShown = 50;
    std::vector<SearchRow> rows;
    if (query.trimmed().isEmpty()) {
        for (const std::string& appkey : m_model.store().recent())
            if (m_model.apps().contains(appkey))
                rows.push_back(rowOf(appkey));
        return rows;
    }
    const auto order = m_search.rank(query, m_model.store().uses(std::time(nullptr)));
    for (std::size_t i = 0; i < order.size() && rows.size() < kShown; ++i) {
        rows.push_back(rowOf(m_entries[order[i]].id, &m_entries[order[i]]));
    }
    return rows;
}

std::vector<SearchRow> ServerWindows::actionRows(const QString& appkey) const
{
    std::vector<SearchRow> rows;
    const SearchRow app = rowOf(appkey.toStdString());
    for (const auto& [action, name] : Launcher::actions(appkey))
        rows.push_back({ action, name, app.name, app.icon, app.icon2x });
    return rows;
}

void ServerWindows::showAppInfo(const QString& appkey)
{
    AppInfo info{ appkey, std::nullopt, {}, false, {} };
    const std::string key = appkey.toStdString();
    if (const AppEntry* app = m_model.apps().find(key)) {
        info.details = AppDetails::read(appkey);
        info.icon = QString::fromStdString(app->iconPath2x);
    }
    info.pinned = m_model.store().isPinned(key);
    for (const AppCategory& category : m_model.store().categories())
        if (std::find(category.apps.begin(), category.apps.end(), key) != category.apps.end())
            info.categories << QString::fromStdString(category.name);
    if (!m_appInfo) {
        m_appInfo = std::make_unique<AppInfoWindow>();
        connect(m_appInfo.get(),
                &AppInfoWindow::launchRequested,
                this,
                [this](const QString& appkey) { m_launch(appkey, {}); });
        connect(
            m_appInfo.get(), &AppInfoWindow::organizeRequested, this, [this](const QString& key) {
                showOrganizer(int(OrganizerDlgMode::organizeApp), key);
            });
    }
    m_appInfo->showApp(info);
    m_appInfo->present();
}

void ServerWindows::showCategoryInfo(const QString& appcat)
{
    CategoryInfo info{ appcat, std::nullopt };
    if (const AppCategory* category = m_model.store().category(appcat.toStdString())) {
        info.apps.emplace();
        for (const std::string& appkey : category->apps)
            if (const AppEntry* app = m_model.apps().find(appkey))
                info.apps->push_back({ QString::fromStdString(appkey),
                                       QString::fromStdString(app->name),
                                       QString::fromStdString(app->iconPath) });
    }
    if (!m_categoryInfo) {
        m_categoryInfo = std::make_unique<CategoryInfoWindow>();
        connect(m_categoryInfo.get(),
                &CategoryInfoWindow::appInfoRequested,
                this,
                &ServerWindows::showAppInfo);
        connect(
            m_categoryInfo.get(),
            &CategoryInfoWindow::organizeRequested,
            this,
            [this](const QString& name) { showOrganizer(int(OrganizerDlgMode::organize), name); });
    }
    m_categoryInfo->showCategory(info);
    m_categoryInfo->present();
}

void ServerWindows::showAbout()
{
    if (!m_about)
        m_about = std::make_unique<AboutWindow>();
    m_about->present();
}

void ServerWindows::showWelcome()
{
    if (!m_welcome) {
        m_welcome = std::make_unique<WelcomeWindow>();
        connect(m_welcome.get(),
                &WelcomeWindow::startWithCategories,
                this,
                &ServerWindows::startWithCategories);
    }
    m_welcome->present();
}

void ServerWindows::startWithCategories()
{
    const auto categoriesById = AppDetails::categoriesOfAll();
    std::vector<WelcomeCategories::App> apps;
    for (const AppEntry& app : m_model.apps().all()) {
        const auto found = categoriesById.find(app.key);
        if (found != categoriesById.end())
            apps.emplace_back(app.key, found->second);
    }
    const auto categories = WelcomeCategories::from(apps);
    m_model.addToCategories(categories);
    qCInfo(lcServer) << "welcome: started with" << categories.size() << "categories";
}

void ServerWindows::showUpdates()
{
    if (!m_updatesWindow) {
        m_updatesWindow = std::make_unique<UpdatesWindow>();
        connect(m_updatesWindow.get(), &UpdatesWindow::restartRequested, this, [this] {
            m_updates.confirm();
            refreshUpdates();
        });
    }
    refreshUpdates();
    m_updatesWindow->present();
}

void ServerWindows::refreshUpdates()
{
    if (!m_updatesWindow)
        return;
    const bool newer = m_updates.isNewerInstalled();
    m_updatesWindow->showState(
        m_updates.running(), newer ? m_updates.installed() : QString(), m_updates.isConfirmed());
}

} // namespace pomvar::srv
