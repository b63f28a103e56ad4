#pragma once

#include "pomvarsrv/app/FrontEndWatch.h"
#include "pomvarsrv/app/GlobalShortcut.h"
#include "pomvarsrv/app/SearchAnswers.h"
#include "pomvarsrv/app/ServerOptions.h"
#include "pomvarsrv/app/ServerWindows.h"
#include "pomvarsrv/app/Updates.h"
#include "pomvarsrv/catalogue/CatalogueLoader.h"
#include "pomvarsrv/ipc/RequestHandler.h"
#include "pomvarsrv/ipc/RuntimeServer.h"
#include "pomvarsrv/ipc/ServerActions.h"
#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/model/StoreFile.h"
#include "pomvarsrv/search/AppSearch.h"

#include <QObject>

#include <vector>

namespace pomvar::srv {

class OrganizerWindow;

// The whole server: the store and the model, the catalogue and the search, request handling and
// the listening sockets, wired to the windows (ServerWindows). It carries out what requests ask
// beyond the model (ServerActions).
// start() takes over the listening sockets, opened before Qt started (LoopbackSockets), then
// loads the catalogue before anything is served: connections wait in the listen backlog
// meanwhile.
class ServerApp
    : public QObject
    , public ServerActions
{
    Q_OBJECT

public:
    explicit ServerApp(const ServerOptions& options, QObject* parent = nullptr);
    ~ServerApp() override;

    // Only the server that holds the port may start: it owns the store and the icon cache.
    void start(const std::vector<int>& listeningSockets);

    ServerModel& model() { return m_model; }
    const GlobalShortcut& shortcut() const { return m_shortcut; }

    // ServerActions
    void launch(const QString& appkey) override { launchApp(appkey, {}); }
    void askNewCategory(const QString& appkey) override { m_windows.askNewCategory(appkey); }
    void showSearch() override { m_windows.showSearch(); }
    void placeSearch(int x, int y) override { m_windows.placeSearch({ x, y }); }
    quint64 showSearchAt(int x, int y) override { return m_windows.showSearchAt({ x, y }); }
    void typeInSearch(int key, int modifiers, const QString& text) override
    {
        m_windows.typeInSearch(key, modifiers, text);
    }
    void endTyping() override { m_windows.endTyping(); }
    void setActivationToken(const QString& token) override { m_windows.setActivationToken(token); }
    void showOrganizer(int pane, const QString& itemkey) override
    {
        m_windows.showOrganizer(pane, itemkey);
    }
    void showAppInfo(const QString& appkey) override { m_windows.showAppInfo(appkey); }
    void showCategoryInfo(const QString& appcat) override { m_windows.showCategoryInfo(appcat); }
    void showAbout() override { m_windows.showAbout(); }
    void showUpdates() override { m_windows.showUpdates(); }
    void quit() override;
    bool isUpdateAvailable() const override { return m_updates.isNewerInstalled(); }
    std::string_view updateStatus() const override { return m_updates.status(); }

private:
    // The app, or one of its desktop actions; Recent and its flag follow, a failure is shown.
    void launchApp(const QString& appkey, const QString& action);
    // A notification: the store file was set aside, or a change could not be saved.
    void tellStoreProblem(StoreFile::Problem problem, const QString& detail);
    // The organizer's settings of the search: the shortcut and the providers.
    void addSearchSettings(OrganizerWindow& organizer);
    // The old front end is gone after the user asked to restart into the installed programs.
    void restartIntoUpdate();

    ServerOptions m_options;
    StoreFile m_storeFile;
    ServerModel m_model;
    Updates m_updates;
    AppSearch m_search;
    RequestHandler m_handler;
    RuntimeServer m_server;
    ServerWindows m_windows;
    SearchAnswers m_answers;
    GlobalShortcut m_shortcut;
    FrontEndWatch m_frontEnd;
    // Last, so that it is destroyed first: it waits for the scans and renders still running.
    CatalogueLoader m_catalogue;
};

} // namespace pomvar::srv
