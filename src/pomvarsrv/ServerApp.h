#pragma once

#include "AppCatalogue.h"
#include "IconCache.h"
#include "NewCategoryPrompt.h"
#include "RequestHandler.h"
#include "RuntimeServer.h"
#include "ServerModel.h"
#include "ServerOptions.h"
#include "StoreFile.h"

#include <QObject>
#include <QThreadPool>

#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

// The whole server: store, catalogue, icons, request handling and the listening sockets.
// start() listens first, so that the port is taken at once, then loads the catalogue before
// anything is served (connections wait in the listen backlog meanwhile). Icons missing from the
// cache are rendered in the background, the generic icon standing in for them until the front
// end is told (appFolderModified) to fetch the menus again.
class ServerApp : public QObject
{
    Q_OBJECT

public:
    explicit ServerApp(const ServerOptions& options, QObject* parent = nullptr);
    ~ServerApp() override;

    RuntimeServer::ListenResult start(quint16 port);

    ServerModel& model() { return m_model; }
    // Loads the installed apps (start() does it; a change to the desktop entries does it again).
    void scan();

Q_SIGNALS:
    void catalogueLoaded();
    void iconsRendered();

private:
    using MissingIcon = std::pair<std::string, QString>; // app key, source file
    void renderInBackground(std::vector<MissingIcon> missing);
    void launch(const QString& appkey);
    // Once every app has its renders: removes the ones nothing shows any longer.
    void pruneIcons();

    ServerOptions m_options;
    StoreFile m_storeFile;
    ServerModel m_model;
    RequestHandler m_handler;
    RuntimeServer m_server;
    AppCatalogue m_catalogue;
    IconCache m_icons;
    NewCategoryPrompt m_prompt;
    IconCache::Files m_genericIcons;
    int m_scanGeneration = 0;
    // Last, so that it is destroyed first: it waits for the renders still running.
    QThreadPool m_renderPool;
};

} // namespace pomvar::srv
