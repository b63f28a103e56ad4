#include "ServerWindows.h"

#include "AboutWindow.h"
#include "AppInfoWindow.h"
#include "CategoryInfoWindow.h"
#include "ServerLog.h"
#include "ServerModel.h"
#include "Updates.h"
#include "UpdatesWindow.h"
#include "WelcomeCategories.h"
#include "WelcomeWindow.h"
#include "wire/Protocol.h"

#include <algorithm>

namespace pomvar::srv {

ServerWindows::ServerWindows(ServerModel& model,
                             Updates& updates,
                             Launch launch,
                             Organize organize,
                             QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_updates(updates)
    , m_launch(std::move(launch))
    , m_organize(std::move(organize))
{
    connect(&m_updates, &Updates::installedChanged, this, &ServerWindows::refreshUpdates);
}

ServerWindows::~ServerWindows() = default;

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
        connect(m_appInfo.get(), &AppInfoWindow::launchRequested, this, m_launch);
        connect(
            m_appInfo.get(), &AppInfoWindow::organizeRequested, this, [this](const QString& key) {
                m_organize(int(OrganizerDlgMode::organizeApp), key);
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
        connect(m_categoryInfo.get(),
                &CategoryInfoWindow::organizeRequested,
                this,
                [this](const QString& name) { m_organize(int(OrganizerDlgMode::organize), name); });
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
