#pragma once

#include "ipc/PomvarRT.h"
#include "ipc/RuntimeLink.h"
#include "model/MenuList.h"
#include "model/UserDefaults.h"
#include "wire/Protocol.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pomvar {

class AppNotifier;
class JsonDocument;
struct CategoryRename;

// The one observable object of the front end. It owns no data: it mirrors what the runtime
// server reports and forwards what the user asks for. Lives as long as the process.
//
// Published state: the three menu lists are MenuList models (a row appended, a list emptied);
// the other properties notify through the signals below, once per assignment or per entry
// stored in place.
class PomvarViewModel : public QObject
{
    Q_OBJECT

public:
    using AppCategories = std::map<std::string, std::set<std::string>>;
    using ExpansionMap = UserDefaults::ExpansionMap;

    // Opens the connection, asks for notification permission and builds the menus once.
    // Production code always uses the default endpoint; tests point it at a fake server.
    explicit PomvarViewModel(PomvarRT srv = {}, QObject* parent = nullptr);
    ~PomvarViewModel() override;

    // Published state.
    MenuList& myAppsTreeData() { return m_myAppsTreeData; }
    MenuList& recentAppsMenuData() { return m_recentAppsMenuData; }
    MenuList& allAppsMenuData() { return m_allAppsMenuData; }
    const AppCategories& appsAppcats() const { return m_appsAppcats; }
    const ExpansionMap& expandedAppCats() const { return m_expandedAppCats; }
    const std::optional<UserPrefs>& prefs() const { return m_prefs; }
    bool isReady() const { return m_isReady; }
    bool isUpdateAvailable() const { return m_isUpdateAvailable; }

    // Stores one category's expansion in place (the category row's setter).
    void setExpandedAppCat(const std::string& name, bool expanded);

    // Plain state.
    bool isLoadedOnStartup() const { return m_isLoadedOnStartup; }
    bool isUpdateFinished() const { return m_isUpdateFinished; }
    // The poll started last; earlier ones keep running until they see a final status.
    QTimer* appUpdateStatusTimer() const { return m_appUpdateStatusTimer; }

    // Menu building: fetches every empty list; updateMenu first empties the lists the server
    // reports as changed.
    void buildAppMenu();
    void updateMenu();

    // Categories.
    void collapseAppCats(const std::string& except);
    bool toggleSetAppCategory(const std::string& appKey, const std::string& appCategory);

    // Updates.
    std::optional<bool> checkUpdateAvailable();
    void checkUpdates();
    void initAppNotifications();
    void showPostUpdateNotification();

    // Requests that open the organizer; it starts the update-status poll too.
    void openOrganizer(OrganizerDlgMode pane, std::string_view itemKey);
    void settings();

    // Runtime link.
    void sendMessage(std::string_view message) { m_link->sendMessage(message); }
    std::optional<std::string> sendMessageAndAwaitResponseData(std::string_view message)
    {
        return m_link->sendMessageAndAwaitResponseData(message);
    }
    AppStatus getAppStatus() { return m_link->getAppStatus(); }
    UserPrefs getUserPrefs() { return m_link->getUserPrefs(); }
    MenuDataStatus getMenuDataModifiedStatus() { return m_link->getMenuDataModifiedStatus(); }

    // How the application terminates (run the will-terminate hook, leave the event loop).
    // The shell supplies it; the update poll calls it on "readyToInstall".
    void setTerminateApplication(std::function<void()> terminate);

Q_SIGNALS:
    void appsAppcatsChanged();
    // One category's entry stored in place.
    void expandedAppCatChanged(const QString& name, bool expanded);
    // The whole map assigned at once.
    void expandedAppCatsChanged();
    void prefsChanged();
    void isReadyChanged(bool ready);
    void isUpdateAvailableChanged(bool available);

private:
    void setReady(bool ready);
    void setPrefs(std::optional<UserPrefs> prefs);
    void clearAppsAppcats();
    void deriveAppsAppcats();
    std::optional<JsonDocument> fetchMenu(std::string_view operation, std::string_view id);
    void recomputeExpandedAppCats(const std::vector<CategoryRename>& renames);
    void startAppUpdateStatusTimer();
    void appUpdateStatusTick(QTimer* timer);

    MenuList m_myAppsTreeData;
    MenuList m_recentAppsMenuData;
    MenuList m_allAppsMenuData;
    AppCategories m_appsAppcats;
    ExpansionMap m_expandedAppCats;
    std::optional<UserPrefs> m_prefs;
    bool m_isReady = false;
    bool m_isUpdateAvailable = false;

    bool m_isLoadedOnStartup = false;
    bool m_isUpdateFinished = false;
    double m_appUpdateStatusTimerIntv = 1.0;
    QPointer<QTimer> m_appUpdateStatusTimer;

    std::unique_ptr<RuntimeLink> m_link;
    std::unique_ptr<AppNotifier> m_notifier;
    std::function<void()> m_terminateApplication;
};

} // namespace pomvar
