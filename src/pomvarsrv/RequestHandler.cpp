#include "RequestHandler.h"

#include "ServerLog.h"
#include "ServerModel.h"
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

RequestHandler::RequestHandler(ServerModel& model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{}

std::optional<std::string> RequestHandler::handle(const Request& request)
{
    if (request::expectsReply(request.id))
        return reply(request);
    if (request::fieldsOf(request.id))
        act(request);
    else
        qCWarning(lcServer) << "ignoring a request with the unknown id"
                            << QString::fromStdString(request.id);
    return std::nullopt;
}

std::string RequestHandler::reply(const Request& request)
{
    const std::string& id = request.id;
    if (id == request::getAppStatus)
        return Json{
            { AppStatus::kReady, m_model.isReady() }, { AppStatus::kUpdateFinished, false }
        }.dump();
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
            qCWarning(lcServer) << "toggle-set-appcat: no installed app" << text(request.appkey)
                                << "or no category" << text(request.appcat);
        }
        return Json{ { field::isset, isSet.value_or(false) } }.dump();
    }
    if (id == request::checkUpdateAvailable)
        return Json{ { field::isUpdateAvailable, false } }.dump();
    // get-app-update-status: updates are not handled yet.
    return Json{ { field::status, "noUpdate" } }.dump();
}

void RequestHandler::act(const Request& request)
{
    const std::string& id = request.id;
    if (id == request::quit) {
        qCInfo(lcServer) << "quit requested";
        Q_EMIT quitRequested();
        return;
    }
    if (id == request::checkUpdates)
        return;
    if (id == request::appSearch) {
        Q_EMIT searchRequested();
        return;
    }
    const bool needsAppkey = id == request::launchId || id == request::togglePinAppId ||
                             id == request::createNewAppcatCxtmnuId;
    if (needsAppkey && (!request.appkey || !m_model.apps().contains(*request.appkey))) {
        qCWarning(lcServer).noquote()
            << id.c_str() << "ignored: no installed app" << text(request.appkey);
        return;
    }
    if (id == request::launchId) {
        Q_EMIT launchRequested(QString::fromStdString(*request.appkey));
    } else if (id == request::togglePinAppId) {
        m_model.togglePin(*request.appkey);
    } else if (id == request::createNewAppcatCxtmnuId) {
        Q_EMIT newCategoryRequested(QString::fromStdString(*request.appkey));
    } else if (id == request::organizerId) {
        qCInfo(lcServer).noquote() << "organizer requested, pane" << request.pane.value_or(-1)
                                   << "item" << text(request.itemkey) << "(no organizer yet)";
    } else if (id == request::getInfoAppId) {
        qCInfo(lcServer).noquote()
            << "get-info-app requested for" << text(request.appkey) << "(no info dialog yet)";
    } else if (id == request::getInfoAppcatId) {
        qCInfo(lcServer).noquote()
            << "get-info-appcat requested for" << text(request.appcat) << "(no info dialog yet)";
    } else {
        qCInfo(lcServer).noquote() << id.c_str() << "requested (no dialog yet)";
    }
}

} // namespace pomvar::srv
