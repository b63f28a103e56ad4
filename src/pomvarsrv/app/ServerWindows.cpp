#include "pomvarsrv/app/ServerWindows.h"

#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/app/Updates.h"
#include "pomvarsrv/catalogue/EditedEntry.h"
#include "pomvarsrv/catalogue/Launcher.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/search/AppSearch.h"
#include "pomvarsrv/ui/AboutWindow.h"
#include "pomvarsrv/ui/AppEditDialog.h"
#include "pomvarsrv/ui/AppInfoWindow.h"
#include "pomvarsrv/ui/CategoryInfoWindow.h"
#include "pomvarsrv/ui/NewCategoryPrompt.h"
#include "pomvarsrv/ui/OrganizerWindow.h"
#include "pomvarsrv/ui/SearchWindow.h"
#include "pomvarsrv/ui/UpdatesWindow.h"
#include "pomvarsrv/ui/UserNotice.h"
#include "pomvarsrv/ui/WelcomeWindow.h"
#include "pomvarsrv/ui/WindowActivation.h"
#include "wire/Protocol.h"

#include <QGuiApplication>

#include <algorithm>
#include <ctime>
#include <utility>

namespace pomvar::srv {

ServerWindows::ServerWindows(ServerModel& model,
                             Updates& updates,
                             const AppSearch& search,
                             Launch launch,
                             QObject* parent)
    : QObject(parent)
    , m_model(model)
    , m_updates(updates)
    , m_search(search)
    , m_launch(std::move(launch))
{
    connect(&m_updates, &Updates::installedChanged, this, &ServerWindows::refreshUpdates);
}

ServerWindows::~ServerWindows() = default;

SearchWindow& ServerWindows::searchWindow()
{
    if (!m_searchWindow) {
        m_searchWindow = std::make_unique<SearchWindow>(
            [this](const QString& query) { return m_search.rows(query); },
            [this](const QString& appkey) {
                return m_search.actionRows(appkey, Launcher::actions(appkey));
            });
        connect(m_searchWindow.get(),
                &SearchWindow::launchRequested,
                this,
                [this](const QString& appkey) { m_launch(appkey, {}); });
        connect(m_searchWindow.get(), &SearchWindow::actionRequested, this, m_launch);
        Q_EMIT searchWindowMade(m_searchWindow.get());
    }
    return *m_searchWindow;
}

void ServerWindows::showSearch()
{
    // The panel sends its place just before: a place older than that is another request's.
    constexpr qint64 kPlaceLifeMs = 2000;
    const auto place = std::exchange(m_searchPlace, std::nullopt);
    if (place && m_searchPlaceAge.elapsed() < kPlaceLifeMs) {
        qCInfo(lcApp) << "app-search requested: showing the search window at" << *place;
        searchWindow().presentAt(*place);
        return;
    }
    qCInfo(lcApp) << "app-search requested: showing the search window";
    searchWindow().present();
}

void ServerWindows::placeSearch(const QPoint& topLeft)
{
    m_searchPlace = topLeft;
    m_searchPlaceAge.start();
}

quint64 ServerWindows::showSearchAt(const QPoint& topLeft)
{
    qCInfo(lcApp) << "app-search-at requested: the panel's typing goes to the search window";
    SearchWindow& window = searchWindow();
    window.presentAt(topLeft);
    window.beginHandOver();
    return QGuiApplication::platformName() == QLatin1String("xcb") ? quint64(window.winId()) : 0;
}

void ServerWindows::typeInSearch(int key, int modifiers, const QString& text)
{
    if (m_searchWindow)
        m_searchWindow->replayKey(key, modifiers, text);
}

void ServerWindows::endTyping()
{
    if (m_searchWindow)
        m_searchWindow->endHandOver();
}

void ServerWindows::setActivationToken(const QString& token)
{
    WindowActivation::setToken(token);
}

void ServerWindows::askNewCategory(const QString& appkey)
{
    NewCategoryPrompt::open(m_model, appkey);
}

void ServerWindows::showOrganizer(int pane, const QString& itemkey)
{
    qCInfo(lcApp) << "organizer requested, pane" << pane << "item" << itemkey;
    if (!m_organizer) {
        m_organizer = std::make_unique<OrganizerWindow>(
            m_model,
            [this](const QString& query) { return m_search.pickerApps(query); },
            [this](const std::string& appkey) {
                const DesktopApp* entry = m_search.entryOf(appkey);
                return entry ? entry->genericName : QString();
            });
        connect(
            m_organizer.get(), &OrganizerWindow::infoRequested, this, &ServerWindows::showAppInfo);
        connect(
            m_organizer.get(), &OrganizerWindow::editRequested, this, &ServerWindows::showEditor);
        Q_EMIT organizerMade(m_organizer.get());
    }
    m_organizer->present(pane, itemkey);
}

AppInfo ServerWindows::appInfo(const QString& appkey) const
{
    AppInfo info{ appkey, std::nullopt, {}, false, false, {} };
    const std::string key = appkey.toStdString();
    if (const AppEntry* app = m_model.apps().find(key)) {
        info.details = AppDetails::read(appkey);
        info.icon = QString::fromStdString(app->iconPath2x);
    }
    info.pinned = m_model.store().isPinned(key);
    info.hidden = m_model.store().isHidden(key);
    for (const AppCategory& category : m_model.store().categories())
        if (std::find(category.apps.begin(), category.apps.end(), key) != category.apps.end())
            info.categories << QString::fromStdString(category.name);
    return info;
}

void ServerWindows::showAppInfo(const QString& appkey)
{
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
        connect(m_appInfo.get(), &AppInfoWindow::editRequested, this, &ServerWindows::showEditor);
        connect(m_appInfo.get(),
                &AppInfoWindow::hiddenChanged,
                this,
                [this](const QString& key, bool hidden) {
                    m_model.setHidden(key.toStdString(), hidden);
                });
    }
    m_appInfo->showApp(appInfo(appkey));
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
    const auto categories = m_search.startingCategories(AppDetails::categoriesOfAll());
    m_model.addToCategories(categories);
    qCInfo(lcApp) << "welcome: started with" << categories.size() << "categories";
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

void ServerWindows::showEditor(const QString& appkey)
{
    qCInfo(lcApp) << "editing" << appkey;
    auto entry = EditedEntry::read(appkey);
    if (!entry) {
        UserNotice::show(
            QStringLiteral("Pomvar"),
            //: %1: the app's desktop file id.
            tr("No installed app has the desktop file ID \u201c%1\u201d.").arg(appkey));
        return;
    }
    // One editor at a time.
    if (m_editor)
        m_editor->close();
    m_editor = new AppEditDialog(std::move(*entry));
    m_editor->show();
    m_editor->raise();
    m_editor->activateWindow();
}

void ServerWindows::refreshShown()
{
    if (m_appInfo && m_appInfo->isVisible())
        m_appInfo->showApp(appInfo(m_appInfo->appkey()));
    if (m_organizer && m_organizer->isVisible())
        m_organizer->refresh();
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
