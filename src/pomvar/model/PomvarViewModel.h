#pragma once

#include "ipc/OrganizerDlgMode.h"
#include "ipc/PomvarRT.h"
#include "ipc/RuntimeLink.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pomvar {

// The one observable object of the front end. It owns no data: it mirrors what the runtime
// server reports and forwards what the user asks for. Lives as long as the process.
class PomvarViewModel : public QObject
{
    Q_OBJECT

public:
    // Production code always uses the default endpoint; tests point it at a fake server.
    explicit PomvarViewModel(PomvarRT srv = {}, QObject* parent = nullptr);
    ~PomvarViewModel() override;

    const PomvarRT& srv() const { return m_link->srv(); }
    std::int64_t maxRespMsgLen() const { return m_link->maxRespMsgLen(); }
    double appUpdateStatusTimerIntv() const { return m_appUpdateStatusTimerIntv; }

    // Runtime link.
    void sendMessage(std::string_view message) { m_link->sendMessage(message); }
    std::optional<std::string> sendMessageAndAwaitResponseData(std::string_view message)
    {
        return m_link->sendMessageAndAwaitResponseData(message);
    }
    std::optional<nlohmann::json> sendMessageAndAwaitResponse(std::string_view message)
    {
        return m_link->sendMessageAndAwaitResponse(message);
    }
    AppStatus getAppStatus() { return m_link->getAppStatus(); }
    UserPrefs getUserPrefs() { return m_link->getUserPrefs(); }
    MenuDataStatus getMenuDataModifiedStatus() { return m_link->getMenuDataModifiedStatus(); }

    // Requests that open the organizer or look for updates; both start the update-status poll.
    void openOrganizer(OrganizerDlgMode pane, std::string_view itemKey);
    void checkUpdates();
    void settings();

    // The poll started last; earlier ones keep running until they see a final status.
    QTimer* appUpdateStatusTimer() const { return m_appUpdateStatusTimer; }

    // How the application terminates (run the will-terminate hook, leave the event loop).
    // The shell supplies it; the update poll calls it on "readyToInstall".
    void setTerminateApplication(std::function<void()> terminate);

private:
    void startAppUpdateStatusTimer();
    void appUpdateStatusTick(QTimer* timer);

    double m_appUpdateStatusTimerIntv = 1.0;
    std::unique_ptr<RuntimeLink> m_link;
    QPointer<QTimer> m_appUpdateStatusTimer;
    std::function<void()> m_terminateApplication;
};

} // namespace pomvar
