#include "model/PomvarViewModel.h"

#include "ipc/JsonDocument.h"
#include "ipc/LenientJson.h"
#include "model/AppCatExpansion.h"
#include "model/AppNotifier.h"
#include "model/MenuPayloadReader.h"
#include "model/ModelLog.h"
#include "wire/Protocol.h"

#include <QCoreApplication>

namespace pomvar {

PomvarViewModel::PomvarViewModel(PomvarRT srv, QObject* parent)
    : QObject(parent)
    , m_notifier(std::make_unique<AppNotifier>())
{
    trace(lcModel(), "PomvarViewModel.init(): Initializing Pomvar view model");
    m_link = std::make_unique<RuntimeLink>(std::move(srv));
    initAppNotifications();
    buildAppMenu();
    if (m_isUpdateFinished)
        showPostUpdateNotification();
}

PomvarViewModel::~PomvarViewModel() = default;

void PomvarViewModel::setExpandedAppCat(const std::string& name, bool expanded)
{
    m_expandedAppCats[name] = expanded;
    Q_EMIT expandedAppCatChanged(QString::fromStdString(name), expanded);
}

void PomvarViewModel::setReady(bool ready)
{
    m_isReady = ready;
    Q_EMIT isReadyChanged(ready);
}

void PomvarViewModel::setPrefs(std::optional<UserPrefs> prefs)
{
    m_prefs = std::move(prefs);
    Q_EMIT prefsChanged();
}

void PomvarViewModel::clearAppsAppcats()
{
    if (m_appsAppcats.empty())
        return;
    m_appsAppcats.clear();
    Q_EMIT appsAppcatsChanged();
}

std::optional<JsonDocument> PomvarViewModel::fetchMenu(std::string_view operation,
                                                       std::string_view id)
{
    trace(lcModel(), "PomvarViewModel.", operation, "(): Sending message '", id, "'");
    return m_link->sendMessageAndAwaitResponse(request::plain(id));
}

void PomvarViewModel::buildAppMenu()
{
    const AppStatus status = getAppStatus();
    setReady(status.ready);
    m_isUpdateFinished = status.updateFinished;

    setPrefs(getUserPrefs());

    // A menu-data request that fails ends this build: the list stays empty and is fetched
    // again at the next opening.
    if (m_allAppsMenuData.isEmpty()) {
        const auto payload = fetchMenu("getAllAppsMenuData", request::getAllAppsMenuData);
        if (!payload)
            return;
        MenuPayloadReader::readAllApps(payload->root(), m_allAppsMenuData);
    }
    std::vector<CategoryRename> renames;
    if (m_myAppsTreeData.isEmpty()) {
        const auto payload = fetchMenu("getMyAppsMenuData", request::getMyAppsMenuData);
        if (!payload)
            return;
        MenuPayloadReader::readMyApps(payload->root(), m_myAppsTreeData);
        renames = MenuPayloadReader::readRenames(payload->root());
    }
    if (m_recentAppsMenuData.isEmpty()) {
        const auto payload = fetchMenu("getRecentAppsMenuData", request::getRecentAppsMenuData);
        if (!payload)
            return;
        MenuPayloadReader::readRecentApps(payload->root(), m_recentAppsMenuData);
    }
    if (m_appsAppcats.empty())
        deriveAppsAppcats();
    recomputeExpandedAppCats(renames);
    const bool updateAvailable = checkUpdateAvailable().value_or(false);
    m_isUpdateAvailable = updateAvailable;
    Q_EMIT isUpdateAvailableChanged(updateAvailable);
}

void PomvarViewModel::deriveAppsAppcats()
{
    for (const auto& app : m_allAppsMenuData.items()) {
        m_appsAppcats[app.id].clear();
        Q_EMIT appsAppcatsChanged();
    }
    for (const auto& row : m_myAppsTreeData.items()) {
        if (!row.children)
            continue;
        for (const auto& member : *row.children) {
            const auto entry = m_appsAppcats.find(member.id);
            if (entry == m_appsAppcats.end())
                fatalStop(concat("PomvarViewModel.buildAppMenu(): category \"",
                                 row.name,
                                 "\" holds \"",
                                 member.id,
                                 "\", which All Apps does not list"));
            entry->second.insert(row.name);
            Q_EMIT appsAppcatsChanged();
        }
    }
}

void PomvarViewModel::recomputeExpandedAppCats(const std::vector<CategoryRename>& renames)
{
    std::vector<std::string> categories;
    for (const auto& row : m_myAppsTreeData.items()) {
        if (row.isCategory())
            categories.push_back(row.name);
    }
    auto saved = UserDefaults::expandedAppCats();
    if (!saved) {
        // Nothing usable saved: every category starts collapsed, other entries stay.
        for (const auto& name : categories)
            setExpandedAppCat(name, false);
        return;
    }
    m_expandedAppCats = AppCatExpansion::reconcile(std::move(*saved), renames, categories, m_prefs);
    Q_EMIT expandedAppCatsChanged();
}

void PomvarViewModel::updateMenu()
{
    if (!m_isLoadedOnStartup) {
        m_isLoadedOnStartup = true;
        setReady(getAppStatus().ready);
    }
    const MenuDataStatus status = getMenuDataModifiedStatus();
    if (status.appFolderModified) {
        trace(lcModel(),
              "PomvarViewModel.updateMenu(): The user's Applications folder has been modified; "
              "starting full rebuild of Pomvar.");
        m_myAppsTreeData.clear();
        m_recentAppsMenuData.clear();
        m_allAppsMenuData.clear();
        clearAppsAppcats();
    } else {
        if (status.appcatsModified) {
            m_myAppsTreeData.clear();
            clearAppsAppcats();
        }
        if (status.pinnedAppsModified) {
            // Every list shows pin marks; pinning changes no category.
            m_myAppsTreeData.clear();
            m_recentAppsMenuData.clear();
            m_allAppsMenuData.clear();
        }
        if (status.recentAppsModified)
            m_recentAppsMenuData.clear();
    }
    setPrefs(std::nullopt);
    buildAppMenu();
}

void PomvarViewModel::collapseAppCats(const std::string& except)
{
    for (const auto& row : m_myAppsTreeData.items()) {
        if (row.isCategory() && row.name != except)
            setExpandedAppCat(row.name, false);
    }
}

bool PomvarViewModel::toggleSetAppCategory(const std::string& appKey,
                                           const std::string& appCategory)
{
    trace(lcModel(), "PomvarViewModel.toggleSetAppCategory(): Sending message 'toggle-set-appcat'");
    const auto reply =
        m_link->sendMessageAndAwaitResponse(request::toggleSetAppcat(appKey, appCategory));
    if (!reply)
        fatalStop("PomvarViewModel.toggleSetAppCategory(): no reply to 'toggle-set-appcat'");
    const auto isSet = lenient::member(reply->root(), "isset");
    if (!isSet)
        fatalStop("PomvarViewModel.toggleSetAppCategory(): the reply has no \"isset\"");
    return lenient::boolean(*isSet);
}

std::optional<bool> PomvarViewModel::checkUpdateAvailable()
{
    trace(lcModel(),
          "PomvarViewModel.checkUpdateAvailable(): Sending message 'check-update-available'");
    const auto reply =
        m_link->sendMessageAndAwaitResponse(request::plain(request::checkUpdateAvailable));
    if (!reply)
        fatalStop("PomvarViewModel.checkUpdateAvailable(): no reply to 'check-update-available'");
    const auto available = lenient::member(reply->root(), "isUpdateAvailable");
    if (!available)
        return std::nullopt;
    return lenient::boolean(*available);
}

void PomvarViewModel::initAppNotifications()
{
    m_notifier->requestPermission();
}

void PomvarViewModel::showPostUpdateNotification()
{
    m_notifier->postUpdateComplete();
}

void PomvarViewModel::openOrganizer(OrganizerDlgMode pane, std::string_view itemKey)
{
    sendMessage(request::organizer(pane, itemKey));
    startAppUpdateStatusTimer();
}

void PomvarViewModel::checkUpdates()
{
    sendMessage(request::plain(request::checkUpdates));
    startAppUpdateStatusTimer();
}

void PomvarViewModel::settings()
{
    openOrganizer(OrganizerDlgMode::settings, "");
}

void PomvarViewModel::setTerminateApplication(std::function<void()> terminate)
{
    m_terminateApplication = std::move(terminate);
}

void PomvarViewModel::startAppUpdateStatusTimer()
{
    // The poll held before is let go, not stopped: it runs until it sees a final status.
    auto* timer = new QTimer(this);
    timer->setInterval(static_cast<int>(m_appUpdateStatusTimerIntv * 1000));
    connect(timer, &QTimer::timeout, this, [this, timer] { appUpdateStatusTick(timer); });
    timer->start();
    m_appUpdateStatusTimer = timer;
}

void PomvarViewModel::appUpdateStatusTick(QTimer* timer)
{
    const auto reply =
        m_link->sendMessageAndAwaitResponse(request::plain(request::getAppUpdateStatus));
    if (!reply)
        fatalStop("PomvarViewModel.startAppUpdateStatusTimer(): no reply to "
                  "'get-app-update-status'");
    const auto statusValue = lenient::member(reply->root(), "status");
    if (!statusValue)
        fatalStop("PomvarViewModel.startAppUpdateStatusTimer(): the reply has no \"status\"");
    const std::string status = lenient::text(*statusValue);
    trace(lcModel(), "PomvarViewModel.startAppUpdateStatusTimer(): App update status: ", status);
    if (status != updateStatus::noUpdate && status != updateStatus::readyToInstall)
        return;
    timer->stop();
    timer->deleteLater();
    if (status == updateStatus::readyToInstall) {
        trace(lcModel(), "Pomvar: Quitting to install app update.");
        if (m_terminateApplication)
            m_terminateApplication();
        else
            QCoreApplication::quit();
    }
}

} // namespace pomvar
