#include "model/PomvarViewModel.h"

#include "ipc/Output.h"
#include "ipc/RequestText.h"

#include <QCoreApplication>

namespace pomvar {

PomvarViewModel::PomvarViewModel(PomvarRT srv, QObject* parent)
    : QObject(parent)
{
    trace("PomvarViewModel.init(): Initializing Pomvar view model");
    m_link = std::make_unique<RuntimeLink>(std::move(srv));
}

PomvarViewModel::~PomvarViewModel() = default;

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
    const auto reply = sendMessageAndAwaitResponse(request::plain(request::getAppUpdateStatus));
    if (!reply)
        fatalStop("PomvarViewModel.startAppUpdateStatusTimer(): no reply to "
                  "'get-app-update-status'");
    const auto status = reply->is_object() ? reply->find("status") : reply->end();
    if (!reply->is_object() || status == reply->end())
        fatalStop("PomvarViewModel.startAppUpdateStatusTimer(): the reply has no \"status\"");
    const std::string text = status->is_string() ? status->get<std::string>() : status->dump();
    trace("PomvarViewModel.startAppUpdateStatusTimer(): App update status: ", text);
    if (text == "noUpdate") {
        timer->stop();
        timer->deleteLater();
    } else if (text == "readyToInstall") {
        timer->stop();
        timer->deleteLater();
        trace("Pomvar: Quitting to install app update.");
        if (m_terminateApplication)
            m_terminateApplication();
        else
            QCoreApplication::quit();
    }
}

} // namespace pomvar
