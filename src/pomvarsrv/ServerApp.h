#pragma once

#include "AppCatalogue.h"
#include "CatalogueCache.h"
#include "CatalogueScan.h"
#include "IconCache.h"
#include "RequestHandler.h"
#include "RuntimeServer.h"
#include "SearchIndex.h"
#include "ServerModel.h"
#include "ServerOptions.h"
#include "ServerWindows.h"
#include "StoreFile.h"
#include "Updates.h"

#include <QObject>
#include <QThreadPool>

#include <string>
#include <vector>

namespace pomvar::srv {

// The whole server: store, catalogue, icons, request handling and the listening sockets, wired
// to the windows (ServerWindows).
// start() takes over the listening sockets, opened before Qt started (LoopbackSockets), then
// loads the catalogue before anything is served (connections wait in the listen backlog
// meanwhile): from the catalogue
// cache when it fits, and then checked by a scan in the background, else by a scan on the spot.
// Icons missing from the icon cache are rendered in the background, the generic icon standing in
// for them. Whenever a background scan or render changes the apps, the front end is told
// (appFolderModified) to fetch the menus again.
class ServerApp : public QObject
{
    Q_OBJECT

public:
    explicit ServerApp(const ServerOptions& options, QObject* parent = nullptr);
    ~ServerApp() override;

    // Only the server that holds the port may start: it owns the store and the icon cache.
    void start(const std::vector<int>& listeningSockets);

    ServerModel& model() { return m_model; }

private:
    // Lists the apps on a worker thread; applies the result unless a newer scan started.
    void scanInBackground();
    void apply(CatalogueScan scan);
    void renderInBackground(int generation, std::vector<CatalogueScan::MissingIcon> missing);
    void saveCatalogue();
    // Once every app has its renders: removes the ones nothing shows any longer.
    void pruneIcons();
    // The app, or one of its desktop actions; Recent and its flag follow, a failure is shown.
    void launch(const QString& appkey, const QString& action = {});
    // The old front end is gone after the user asked to restart into the installed programs.
    void restartIntoUpdate();

    ServerOptions m_options;
    StoreFile m_storeFile;
    ServerModel m_model;
    Updates m_updates;
    RequestHandler m_handler;
    RuntimeServer m_server;
    AppCatalogue m_catalogue;
    IconCache m_icons;
    CatalogueCache m_catalogueCache;
    std::string m_environment;
    IconCache::Files m_genericIcons;
    SearchIndex m_search;
    std::vector<DesktopApp> m_entries; // in the search index's order
    ServerWindows m_windows;
    // Counts scans started and lists applied: only the latest one's results are used.
    int m_scanGeneration = 0;
    // Last, so that they are destroyed first: they wait for the scans and renders still running.
    QThreadPool m_scanPool;
    QThreadPool m_renderPool;
};

} // namespace pomvar::srv
