#include "pomvarsrv/app/ServerApp.h"

#include "desktop/DesktopNotification.h"
#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/catalogue/Launcher.h"
#include "pomvarsrv/ui/OrganizerWindow.h"
#include "pomvarsrv/ui/SearchSettingsBox.h"
#include "pomvarsrv/ui/SearchWindow.h"
#include "pomvarsrv/ui/SettingsPane.h"
#include "pomvarsrv/ui/UserNotice.h"
#include "wire/UserPaths.h"
#include "wire/Version.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>

namespace pomvar::srv {

namespace {

// How long the notification service may take to show the server's last words.
constexpr int kLastWordsMs = 2000;

// What runs the search from a desktop's keyboard settings: this server with --search, quoted for
// a shell.
QString searchCommand(const QString& installDir)
{
    QString program = installDir.isEmpty() ? QCoreApplication::applicationFilePath()
                                           : installDir + QStringLiteral("/pomvarsrv");
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./+-]+$"));
    if (!plain.match(program).hasMatch())
        program = u'\'' + program.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
    return program + QStringLiteral(" --search");
}

} // namespace

ServerApp::ServerApp(const ServerOptions& options, QObject* parent)
    : QObject(parent)
    , m_options(options)
    , m_model(&m_storeFile)
    , m_updates(m_options.installDir, QString::fromUtf8(pomvar::version()))
    , m_search(m_model)
    , m_handler(m_model, *this)
    , m_server(m_handler, m_options.frontEnd)
    , m_windows(m_model,
                m_updates,
                m_search,
                [this](const QString& appkey, const QString& action) { launchApp(appkey, action); })
    , m_answers(m_model, m_options.calculatorModule)
    , m_shortcut(searchCommand(m_options.installDir))
    , m_frontEnd(m_options.frontEnd, QString::fromStdString(paths::pidFile()))
    , m_catalogue(m_model, m_search)
{
    m_updates.setFrontEnd(m_options.frontEnd);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (!m_options.installDir.isEmpty()) {
        const QString generic = m_options.installDir + QStringLiteral("/generic-app-%1.png");
        m_model.setFallbackIcons(generic.arg(24).toStdString(), generic.arg(48).toStdString());
    }
    m_model.setIconsMissingHandler([this] {
        qCInfo(lcApp) << "icon files of the menus are gone: rendering them again";
        m_catalogue.rescan();
    });
    connect(&m_updates, &Updates::restartDue, this, &ServerApp::restartIntoUpdate);
    connect(&m_catalogue, &CatalogueLoader::appsChanged, &m_windows, &ServerWindows::refreshShown);
    m_storeFile.setProblemHandler([this](StoreFile::Problem problem, const QString& detail) {
        tellStoreProblem(problem, detail);
    });
    connect(&m_windows, &ServerWindows::searchWindowMade, this, [this](SearchWindow* window) {
        m_answers.attach(*window);
    });
    connect(&m_windows, &ServerWindows::organizerMade, this, [this](OrganizerWindow* organizer) {
        addSearchSettings(*organizer);
    });
    connect(&m_shortcut, &GlobalShortcut::pressed, this, [this](quint32 time) {
        qCInfo(lcApp) << "the search shortcut was pressed";
        m_windows.setActivationToken(QStringLiteral("pomvar_TIME%1").arg(time));
        m_windows.showSearch();
    });
}

ServerApp::~ServerApp() = default;

void ServerApp::start(const std::vector<int>& listeningSockets)
{
    m_server.serve(listeningSockets);
    // Only the server that holds the port owns the store and the icon cache: a second one
    // leaves without touching either.
    const QFileInfo storeFile(m_storeFile.path());
    const bool firstStart = !storeFile.exists() && !storeFile.isSymLink();
    m_model.setStore(m_storeFile.load());
    m_shortcut.apply(m_model.store().searchPrefs().shortcut);
    if (m_options.clearRecent) {
        qCInfo(lcApp) << "clearing the recent apps";
        m_model.clearRecent();
    }
    // Clients that connect meanwhile wait in the listen backlog: nothing is answered before
    // the catalogue is in.
    m_catalogue.load(m_options.refresh);
    if (firstStart || m_options.welcome) {
        qCInfo(lcApp) << "showing the welcome:" << (firstStart ? "first start" : "--welcome");
        // Stored now, so that the welcome never shows again unless asked for.
        if (firstStart)
            m_storeFile.save(m_model.store());
        m_windows.showWelcome();
    }
}

void ServerApp::tellStoreProblem(StoreFile::Problem problem, const QString& detail)
{
    if (problem == StoreFile::Problem::setAside) {
        DesktopNotification(
            tr("Pomvar set its settings file aside"),
            //: %1: the settings file; %2: where it was moved.
            tr("%1 could not be read as Pomvar's pins, categories and preferences. It is kept as "
               "%2, and Pomvar starts without them.")
                .arg(m_storeFile.path(), detail))
            .post();
        return;
    }
    DesktopNotification(tr("Pomvar could not save a change"),
                        //: %1: the settings file; %2: why it could not be written.
                        tr("%1 cannot be written (%2): the change will not survive a restart.")
                            .arg(m_storeFile.path(), detail))
        .post();
}

void ServerApp::addSearchSettings(OrganizerWindow& organizer)
{
    SearchSettingsBox::Services services{
        [] {
            std::vector<SearchSettingsBox::Provider> providers;
            for (const SearchProvider& provider : SearchAnswers::installedProviders())
                providers.push_back(
                    { provider.desktopId, provider.name, provider.enabledByDefault });
            return providers;
        },
        [this] { return m_shortcut.stateText(); },
        [this] {
            m_shortcut.apply(m_model.store().searchPrefs().shortcut);
            m_answers.settingsChanged();
        },
    };
    organizer.settingsPane()->addSection(new SearchSettingsBox(m_model, std::move(services)));
}

void ServerApp::quit()
{
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void ServerApp::restartIntoUpdate()
{
    // The port first: the new front end waits for its own server to take it.
    m_server.close();
    m_model.noteUpdatedFrom(m_updates.running().toStdString());
    QString why;
    if (!m_updates.startInstalledFrontEnd(&why))
        DesktopNotification(tr("Pomvar was not restarted"), why).postAndWait(kLastWordsMs);
    qCInfo(lcApp) << "restarted into the installed Pomvar: leaving";
    QCoreApplication::exit(0);
}

void ServerApp::launchApp(const QString& appkey, const QString& action)
{
    QString error;
    if (Launcher::launch(appkey, action, &error)) {
        qCInfo(lcApp) << "launched" << appkey << action;
        m_model.noteLaunched(appkey.toStdString());
        return;
    }
    qCWarning(lcApp).noquote() << "cannot launch" << appkey + u':' << error;
    const AppEntry* app = m_model.apps().find(appkey.toStdString());
    const QString name = app ? QString::fromStdString(app->name) : appkey;
    UserNotice::show(QStringLiteral("Pomvar"),
                     //: %1: the app's name; %2: why it could not be started.
                     tr("%1 could not be started.\n\n%2").arg(name, error));
}

} // namespace pomvar::srv
