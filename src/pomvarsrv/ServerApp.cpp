#include "ServerApp.h"

#include "IconTheme.h"
#include "Launcher.h"
#include "ServerLog.h"
#include "UserNotice.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <future>
#include <map>
#include <memory>

namespace pomvar::srv {

namespace {

QString iconName(const QString& icon)
{
    for (const auto* extension : { ".png", ".svg", ".xpm" }) {
        if (icon.endsWith(QLatin1String(extension)))
            return icon.left(icon.size() - 4);
    }
    return icon;
}

std::string bundleId(const std::string& desktopId)
{
    constexpr std::string_view suffix = ".desktop";
    if (desktopId.size() > suffix.size() && desktopId.ends_with(suffix))
        return desktopId.substr(0, desktopId.size() - suffix.size());
    return desktopId;
}

} // namespace

ServerApp::ServerApp(const ServerOptions& options, QObject* parent)
    : QObject(parent)
    , m_options(options)
    , m_model(&m_storeFile)
    , m_handler(m_model)
    , m_server(m_handler)
    , m_prompt(m_model)
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_renderPool.setMaxThreadCount(1);
    connect(&m_handler,
            &RequestHandler::quitRequested,
            qApp,
            &QCoreApplication::quit,
            Qt::QueuedConnection);
    connect(&m_handler, &RequestHandler::launchRequested, this, &ServerApp::launch);
    connect(&m_handler, &RequestHandler::newCategoryRequested, &m_prompt, &NewCategoryPrompt::ask);
    connect(&m_catalogue, &AppCatalogue::changed, this, [this] {
        qCInfo(lcServer) << "the installed apps changed";
        scan();
    });
}

ServerApp::~ServerApp()
{
    m_renderPool.waitForDone();
}

RuntimeServer::ListenResult ServerApp::start(quint16 port)
{
    const auto result = m_server.listen(port);
    if (result != RuntimeServer::ListenResult::listening)
        return result;
    qCInfo(lcServer) << "listening on port" << port;
    // Only the server that holds the port owns the store and the icon cache: a second one
    // leaves without touching either.
    m_model.setStore(m_storeFile.load());
    if (m_options.clearRecent) {
        qCInfo(lcServer) << "clearing the recent apps";
        m_model.clearRecent();
    }
    if (m_options.refresh) {
        qCInfo(lcServer) << "refreshing: every icon is rendered again";
        m_icons.clear();
    }
    if (m_options.welcome)
        qCInfo(lcServer) << "--welcome given (no welcome dialog yet)";
    // Clients that connect meanwhile wait in the listen backlog: nothing is answered before
    // the catalogue is in.
    scan();
    return result;
}

void ServerApp::scan()
{
    QElapsedTimer clock;
    clock.start();
    // The icon folders are indexed on another thread while GIO lists the apps here.
    const QString themeName = IconTheme::userThemeName();
    auto indexing = std::async(std::launch::async, [themeName] {
        return IconTheme(themeName, IconTheme::defaultIconDirs(), IconTheme::defaultPixmapDirs());
    });
    const auto apps = m_catalogue.list();
    const qint64 listed = clock.elapsed();
    const IconTheme theme = indexing.get();
    const qint64 indexed = clock.elapsed();
    const IconCache::Files generic =
        m_icons.generic(theme.find(QStringLiteral("application-x-executable"), IconCache::kSize2x));

    std::vector<AppEntry> entries;
    entries.reserve(apps.size());
    std::vector<MissingIcon> missing;
    for (const auto& app : apps) {
        const QString source = QDir::isAbsolutePath(app.icon)
                                   ? app.icon
                                   : theme.find(iconName(app.icon), IconCache::kSize2x);
        IconCache::Files files = source.isEmpty() ? generic : m_icons.cached(source);
        if (!files.isValid()) {
            missing.emplace_back(app.id, source);
            files = generic;
        }
        entries.push_back(AppEntry{ app.id,
                                    app.name,
                                    bundleId(app.id),
                                    files.path.toStdString(),
                                    files.path2x.toStdString() });
    }
    m_model.setApps(InstalledApps(std::move(entries)));
    ++m_scanGeneration;
    qCInfo(lcServer).noquote() << apps.size() << "apps loaded in" << clock.elapsed() << "ms (listed"
                               << listed << "ms, then waited" << indexed - listed
                               << "ms for the icon themes);" << missing.size()
                               << "icons to render; themes"
                               << theme.themeNames().join(QStringLiteral(", "));
    m_genericIcons = generic;
    if (missing.empty())
        pruneIcons();
    else
        renderInBackground(std::move(missing));
    Q_EMIT catalogueLoaded();
}

void ServerApp::renderInBackground(std::vector<MissingIcon> missing)
{
    const int generation = m_scanGeneration;
    const IconCache cache = m_icons;
    m_renderPool.start([this, cache, generation, missing = std::move(missing)] {
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
                    pruneIcons();
                }
                Q_EMIT iconsRendered();
            },
            Qt::QueuedConnection);
    });
}

void ServerApp::pruneIcons()
{
    QSet<QString> inUse = { m_genericIcons.path, m_genericIcons.path2x };
    for (const AppEntry& app : m_model.apps().all())
        inUse << QString::fromStdString(app.iconPath) << QString::fromStdString(app.iconPath2x);
    if (const int removed = m_icons.prune(inUse))
        qCInfo(lcServer) << removed << "stale icon renders removed";
}

void ServerApp::launch(const QString& appkey)
{
    QString error;
    if (Launcher::launch(appkey, &error)) {
        qCInfo(lcServer) << "launched" << appkey;
        m_model.noteLaunched(appkey.toStdString());
        return;
    }
    qCWarning(lcServer).noquote() << "cannot launch" << appkey + u':' << error;
    const AppEntry* app = m_model.apps().find(appkey.toStdString());
    const QString name = app ? QString::fromStdString(app->name) : appkey;
    UserNotice::show(QStringLiteral("Pomvar"),
                     QStringLiteral("%1 could not be started.\n\n%2").arg(name, error));
}

} // namespace pomvar::srv
