#include "RequestHandler.h"

#include "ServerLog.h"
#include "ServerModel.h"

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
    if (Request::expectsReply(request.id))
        return reply(request);
    if (Request::isKnown(request.id))
        act(request);
    else
        qCWarning(lcServer) << "ignoring a request with the unknown id"
                            << QString::fromStdString(request.id);
    return std::nullopt;
}

std::string RequestHandler::reply(const Request& request)
{
    const std::string& id = request.id;
    if (id == "get-app-status")
        return Json{ { "ready", m_model.isReady() }, { "updateFinished", false } }.dump();
    if (id == "get-user-prefs") {
        const auto& prefs = m_model.store().prefs();
        return Json{
            { "MenuDensity", prefs.menuDensity },
            { "AnimationFx", prefs.animationFx },
            { "SaveExpAppCats", prefs.saveExpAppCats },
            { "SaveLastMenu", prefs.saveLastMenu },
            { "OneExpAppCat", prefs.oneExpAppCat }
        }.dump();
    }
    if (id == "get-menu-data-modified-status") {
        const ModifiedFlags flags = m_model.takeFlags();
        return Json{
            { "appFolderModified", flags.appFolder },
            { "recentAppsModified", flags.recentApps },
            { "appcatsModified", flags.appcats },
            { "pinnedAppsModified", flags.pinnedApps }
        }.dump();
    }
    if (id == "get-allapps-menu-data")
        return m_model.allAppsPayload();
    if (id == "get-myapps-menu-data")
        return m_model.takeMyAppsPayload();
    if (id == "get-recentapps-menu-data")
        return m_model.recentAppsPayload();
    if (id == "toggle-set-appcat") {
        std::optional<bool> isSet;
        if (request.appkey && request.appcat)
            isSet = m_model.toggleMember(*request.appkey, *request.appcat);
        if (!isSet) {
            qCWarning(lcServer) << "toggle-set-appcat: no installed app" << text(request.appkey)
                                << "or no category" << text(request.appcat);
        }
        return Json{ { "isset", isSet.value_or(false) } }.dump();
    }
    if (id == "check-update-available")
        return Json{ { "isUpdateAvailable", false } }.dump();
    // get-app-update-status: updates are not handled yet.
    return Json{ { "status", "noUpdate" } }.dump();
}

void RequestHandler::act(const Request& request)
{
    const std::string& id = request.id;
    if (id == "quit") {
        qCInfo(lcServer) << "quit requested";
        Q_EMIT quitRequested();
        return;
    }
    if (id == "check-updates")
        return;
    const bool needsAppkey =
        id == "launch" || id == "toggle-pin-app" || id == "create-new-appcat-cxtmnu";
    if (needsAppkey && (!request.appkey || !m_model.apps().contains(*request.appkey))) {
        qCWarning(lcServer).noquote()
            << id.c_str() << "ignored: no installed app" << text(request.appkey);
        return;
    }
    if (id == "launch") {
        Q_EMIT launchRequested(QString::fromStdString(*request.appkey));
    } else if (id == "toggle-pin-app") {
        m_model.togglePin(*request.appkey);
    } else if (id == "create-new-appcat-cxtmnu") {
        Q_EMIT newCategoryRequested(QString::fromStdString(*request.appkey));
    } else if (id == "organizer") {
        qCInfo(lcServer).noquote() << "organizer requested, pane" << request.pane.value_or(-1)
                                   << "item" << text(request.itemkey) << "(no organizer yet)";
    } else if (id == "get-info-app") {
        qCInfo(lcServer).noquote()
            << "get-info-app requested for" << text(request.appkey) << "(no info dialog yet)";
    } else if (id == "get-info-appcat") {
        qCInfo(lcServer).noquote()
            << "get-info-appcat requested for" << text(request.appcat) << "(no info dialog yet)";
    } else {
        qCInfo(lcServer).noquote() << id.c_str() << "requested (no dialog yet)";
    }
}

} // namespace pomvar::srv
