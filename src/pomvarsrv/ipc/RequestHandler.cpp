#include "pomvarsrv/ipc/RequestHandler.h"

#include "pomvarsrv/ipc/IpcLog.h"
#include "pomvarsrv/ipc/ServerActions.h"
#include "pomvarsrv/model/ServerModel.h"
#include "wire/Protocol.h"

#include <nlohmann/json.hpp>

namespace pomvar::srv {

namespace {

using Json = nlohmann::json;

QString text(const std::optional<std::string>& value)
{
    return value ? QString::fromStdString(*value) : QStringLiteral("(none)");
}

} // namespace

RequestHandler::RequestHandler(ServerModel& model, ServerActions& actions)
    : m_model(model)
    , m_actions(actions)
{}

std::optional<std::string> RequestHandler::handle(const Request& request)
{
    if (request::expectsReply(request.id))
        return reply(request);
    if (request::fieldsOf(request.id))
        act(request);
    else
        qCWarning(lcIpc) << "ignoring a request with the unknown id"
                         << QString::fromStdString(request.id);
    return std::nullopt;
}

std::string RequestHandler::reply(const Request& request)
{
    const std::string& id = request.id;
    if (id == request::getAppStatus) {
        const bool ready = m_model.isReady();
        return Json{
            { AppStatus::kReady, ready },
            { AppStatus::kUpdateFinished, ready && m_model.takeUpdateFinished() }
        }.dump();
    }
    if (id == request::getUserPrefs)
        return Store::prefsJson(m_model.store().prefs()).dump();
    if (id == request::getMenuDataModifiedStatus) {
        const MenuDataStatus flags = m_model.takeFlags();
        return Json{
            { MenuDataStatus::kAppFolderModified, flags.appFolderModified },
            { MenuDataStatus::kRecentAppsModified, flags.recentAppsModified },
            { MenuDataStatus::kAppcatsModified, flags.appcatsModified },
            { MenuDataStatus::kPinnedAppsModified, flags.pinnedAppsModified }
        }.dump();
    }
    if (id == request::getAllAppsMenuData)
        return m_model.allAppsPayload();
    if (id == request::getMyAppsMenuData)
        return m_model.takeMyAppsPayload();
    if (id == request::getRecentAppsMenuData)
        return m_model.recentAppsPayload();
    if (id == request::toggleSetAppcatId) {
        std::optional<bool> isSet;
        if (request.appkey && request.appcat)
            isSet = m_model.toggleMember(*request.appkey, *request.appcat);
        if (!isSet) {
            qCWarning(lcIpc) << "toggle-set-appcat: no installed app" << text(request.appkey)
                             << "or no category" << text(request.appcat);
        }
        return Json{ { field::isset, isSet.value_or(false) } }.dump();
    }
    if (id == request::checkUpdateAvailable)
        return Json{ { field::isUpdateAvailable, m_actions.isUpdateAvailable() } }.dump();
    if (id == request::appSearchAtId)
        return Json{
            { field::window,
              m_actions.showSearchAt(int(request.x.value_or(0)), int(request.y.value_or(0))) }
        }.dump();
    // get-app-update-status
    return Json{ { field::status, m_actions.updateStatus() } }.dump();
}

void RequestHandler::act(const Request& request)
{
    const std::string& id = request.id;
    const auto qtext = [](const std::optional<std::string>& value) {
        return QString::fromStdString(value.value_or(std::string()));
    };
    if (id == request::quit) {
        qCInfo(lcIpc) << "quit requested";
        m_actions.quit();
    } else if (id == request::checkUpdates) {
        m_actions.showUpdates();
    } else if (id == request::appSearch) {
        m_actions.showSearch();
    } else if (id == request::appSearchPlaceId) {
        m_actions.placeSearch(int(request.x.value_or(0)), int(request.y.value_or(0)));
    } else if (id == request::appSearchKeyId) {
        m_actions.typeInSearch(
            int(request.key.value_or(0)), int(request.modifiers.value_or(0)), qtext(request.text));
    } else if (id == request::appSearchTyped) {
        m_actions.endTyping();
    } else if (id == request::activationTokenId) {
        m_actions.setActivationToken(qtext(request.token));
    } else if (id == request::about) {
        m_actions.showAbout();
    } else if (id == request::organizerId) {
        m_actions.showOrganizer(int(request.pane.value_or(0)), qtext(request.itemkey));
    } else if (id == request::getInfoAppId) {
        m_actions.showAppInfo(qtext(request.appkey));
    } else if (id == request::getInfoAppcatId) {
        m_actions.showCategoryInfo(qtext(request.appcat));
    } else if (id == request::placeAppcatId) {
        if (!m_model.placeCategories({ request.appcat.value_or(std::string()) },
                                     request.beforekey.value_or(std::string())))
            qCInfo(lcIpc) << "place-appcat: nothing changed for" << text(request.appcat);
    } else if (!request.appkey || !m_model.apps().contains(*request.appkey)) {
        // The requests left act on an installed app only.
        qCWarning(lcIpc).noquote()
            << id.c_str() << "ignored: no installed app" << text(request.appkey);
    } else if (id == request::launchId) {
        m_actions.launch(QString::fromStdString(*request.appkey));
    } else if (id == request::togglePinAppId) {
        m_model.togglePin(*request.appkey);
    } else if (id == request::createNewAppcatCxtmnuId) {
        m_actions.askNewCategory(QString::fromStdString(*request.appkey));
    } else if (id == request::placePinnedAppId) {
        m_model.placePins({ *request.appkey }, request.beforekey.value_or(std::string()));
    } else if (id == request::placeAppcatAppId) {
        if (!m_model.placeMembers(request.appcat.value_or(std::string()),
                                  { *request.appkey },
                                  request.beforekey.value_or(std::string())))
            qCInfo(lcIpc) << "place-appcat-app: nothing changed for" << text(request.appcat);
    }
}

} // namespace pomvar::srv
