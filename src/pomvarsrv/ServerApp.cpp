#include "ServerApp.h"

#include "IconTheme.h"
#include "Launcher.h"
#include "ServerLog.h"
#include "UserNotice.h"
#include "wire/Version.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSet>
#include <QTimer>

#include <malloc.h>
#include <map>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

namespace pomvar::srv {

namespace {

constexpr int kCheckDelayMs = 1500;

// Background work is never urgent: the calling thread gets a nice value of 10, so the front end
// and the server's own replies go first, yet a busy machine cannot starve it (as SCHED_IDLE,
// Qt's IdlePriority, would).
void yieldToOthers()
{
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
}

} // namespace

ServerApp::ServerApp(const ServerOptions& options, QObject* parent)
    : QObject(parent)
    , m_options(options)
    , m_model(&m_storeFile)
    , m_updates(m_options.installDir, QString::fromUtf8(pomvar::version()))
    , m_handler(m_model, &m_updates)
    , m_server(m_handler)
    , m_windows(m_model,
                m_updates,
                m_search,
                m_entries,
                [this](const QString& appkey, const QString& action) { launch(appkey, action); })
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_scanPool.setMaxThreadCount(1);
    m_renderPool.setMaxThreadCount(1);
    connect(&m_handler,
            &RequestHandler::quitRequested,
            qApp,
            &QCoreApplication::quit,
            Qt::QueuedConnection);
    connect(&m_handler, &RequestHandler::launchRequested, this, [this](const QString& appkey) {
        launch(appkey);
    });
    connect(&m_handler,
            &RequestHandler::newCategoryRequested,
            &m_windows,
            &ServerWindows::askNewCategory);
    connect(&m_handler, &RequestHandler::searchRequested, &m_windows, &ServerWindows::showSearch);
    connect(
        &m_handler, &RequestHandler::organizerRequested, &m_windows, &ServerWindows::showOrganizer);
    connect(&m_handler, &RequestHandler::appInfoRequested, &m_windows, &ServerWindows::showAppInfo);
    connect(&m_handler,
            &RequestHandler::categoryInfoRequested,
            &m_windows,
            &ServerWindows::showCategoryInfo);
    connect(&m_handler, &RequestHandler::aboutRequested, &m_windows, &ServerWindows::showAbout);
    connect(&m_handler, &RequestHandler::updatesRequested, &m_windows, &ServerWindows::showUpdates);
    connect(&m_updates, &Updates::restartDue, this, &ServerApp::restartIntoUpdate);
    connect(&m_catalogue, &AppCatalogue::changed, this, [this] {
        qCInfo(lcServer) << "the installed apps changed";
        scanInBackground();
    });
}

ServerApp::~ServerApp()
{
    m_scanPool.waitForDone();
    m_renderPool.waitForDone();
}

void ServerApp::start(const std::vector<int>& listeningSockets)
{
    m_server.serve(listeningSockets);
    // Only the server that holds the port owns the store and the icon cache: a second one
    // leaves without touching either.
    const bool firstStart = !QFileInfo::exists(m_storeFile.path());
    m_model.setStore(m_storeFile.load());
    if (m_options.clearRecent) {
        qCInfo(lcServer) << "clearing the recent apps";
        m_model.clearRecent();
    }
    if (m_options.refresh) {
        qCInfo(lcServer) << "refreshing: every icon is rendered again";
        m_icons.clear();
    }
    // Clients that connect meanwhile wait in the listen backlog: nothing is answered before
    // the catalogue is in.
    QElapsedTimer clock;
    clock.start();
    m_environment = CatalogueCache::environment();
    m_catalogue.watch();
    if (auto cached = m_options.refresh ? std::nullopt : m_catalogueCache.load(m_environment)) {
        m_model.setApps(InstalledApps(std::move(cached->apps)));
        m_entries = std::move(cached->entries);
        m_search.setApps(m_entries);
        qCInfo(lcServer) << m_model.apps().size() << "apps loaded in" << clock.elapsed()
                         << "ms from the catalogue cache; checking it in the background";
        // Once the front end, starting meanwhile, has had the processor for its first build.
        QTimer::singleShot(kCheckDelayMs, this, &ServerApp::scanInBackground);
    } else {
        apply(CatalogueScan::run(IconTheme::userThemeName(), m_icons));
        qCInfo(lcServer) << m_model.apps().size() << "apps loaded in" << clock.elapsed() << "ms";
    }
    if (firstStart || m_options.welcome) {
        qCInfo(lcServer) << "showing the welcome:" << (firstStart ? "first start" : "--welcome");
        // Stored now, so that the welcome never shows again unless asked for.
        if (firstStart)
            m_storeFile.save(m_model.store());
        m_windows.showWelcome();
    }
}

void ServerApp::scanInBackground()
{
    const int generation = ++m_scanGeneration;
    const QString themeName = IconTheme::userThemeName();
    m_scanPool.start([this, generation, themeName, icons = m_icons] {
        yieldToOthers();
        auto scan = std::make_shared<CatalogueScan>(CatalogueScan::run(themeName, icons));
        QMetaObject::invokeMethod(
            this,
            [this, generation, scan] {
                // A newer scan has a newer list.
                if (generation == m_scanGeneration)
                    apply(std::move(*scan));
                // GIO's listing holds every entry's key file at once: give those pages back.
                ::malloc_trim(0);
            },
            Qt::QueuedConnection);
    });
}

void ServerApp::apply(CatalogueScan scan)
{
    const int generation = ++m_scanGeneration;
    qCInfo(lcServer).noquote() << scan.summary;
    m_genericIcons = scan.generic;
    // Unchanged apps keep the menus as the front end has them, and the cache as it is.
    const bool appsChanged = !m_model.isReady() || scan.apps != m_model.apps().all();
    const bool entriesChanged = scan.entries != m_entries;
    if (entriesChanged) {
        m_entries = std::move(scan.entries);
        m_search = std::move(scan.index);
    }
    if (appsChanged)
        m_model.setApps(InstalledApps(std::move(scan.apps)));
    // Now, not after the renders: a start cut short still leaves the next one a catalogue.
    if (appsChanged || entriesChanged)
        saveCatalogue();
    if (scan.missing.empty())
        pruneIcons();
    else
        renderInBackground(generation, std::move(scan.missing));
}

void ServerApp::renderInBackground(int generation, std::vector<CatalogueScan::MissingIcon> missing)
{
    const IconCache cache = m_icons;
    m_renderPool.start([this, cache, generation, missing = std::move(missing)] {
        yieldToOthers();
        std::map<QString, IconCache::Files> rendered;
        auto done = std::make_shared<std::vector<AppEntry>>();
        for (const auto& [key, source] : missing) {
            auto it = rendered.find(source);
            if (it == rendered.end())
                it = rendered.emplace(source, cache.render(source)).first;
            if (it->second.isValid())
                done->push_back(AppEntry{
                    key, {}, {}, it->second.path.toStdString(), it->second.path2x.toStdString() });
        }
        QMetaObject::invokeMethod(
            this,
            [this, generation, done] {
                qCInfo(lcServer) << done->size() << "icons rendered";
                // A newer scan has its own list and its own renders.
                if (generation == m_scanGeneration) {
                    m_model.setIcons(*done);
                    saveCatalogue();
                    pruneIcons();
                }
            },
            Qt::QueuedConnection);
    });
}

void ServerApp::saveCatalogue()
{
    if (!m_catalogueCache.save(m_environment, { m_model.apps().all(), m_entries }))
        qCWarning(lcServer) << "cannot write the catalogue cache" << m_catalogueCache.path();
}

void ServerApp::pruneIcons()
{
    QSet<QString> inUse = { m_genericIcons.path, m_genericIcons.path2x };
    for (const AppEntry& app : m_model.apps().all())
        inUse << QString::fromStdString(app.iconPath) << QString::fromStdString(app.iconPath2x);
    if (const int removed = m_icons.prune(inUse))
        qCInfo(lcServer) << removed << "stale icon renders removed";
}

void ServerApp::restartIntoUpdate()
{
    // The port first: the new front end waits for its own server to take it.
    m_server.close();
    m_model.noteUpdatedFrom(m_updates.running().toStdString());
    m_updates.startInstalledFrontEnd();
    qCInfo(lcServer) << "restarted into the installed Pomvar: leaving";
    QCoreApplication::exit(0);
}

void ServerApp::launch(const QString& appkey, const QString& action)
{
    QString error;
    if (Launcher::launch(appkey, action, &error)) {
        qCInfo(lcServer) << "launched" << appkey << action;
        m_model.noteLaunched(appkey.toStdString());
        return;
    }
    qCWarning(lcServer).noquote() << "cannot launch" << appkey + u':' << error;
    const AppEntry* app = m_model.apps().find(appkey.toStdString());
    const QString name = app ? QString::fromStdString(app->name) : appkey;
    UserNotice::show(QStringLiteral("Pomvar"),
                     //: %1: the app's name; %2: why it could not be started.
                     tr("%1 could not be started.\n\n%2").arg(name, error));
}

} // namespace pomvar::srv
