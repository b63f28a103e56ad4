// The real server over TCP with the real framing: which requests are answered and which are
// not, the modified flags, a category name holding quotes and a backslash through the pasted
// texts, damaged and truncated frames, clients that misbehave or come and go, launching.
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Frame.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace pomvar::srvtest;
using Json = nlohmann::json;

#define JCOMPARE(actual, expected) QVERIFY2((actual) == (expected), Json(actual).dump().c_str())

namespace {

// A category name that is not valid JSON once pasted between quotes.
const std::string kQuoted = "Say \"hi\" \\ there";

std::optional<Json> jsonReply(SrvClient& client, const std::string& text)
{
    const auto reply = client.request(text);
    if (!reply || reply->empty())
        return std::nullopt;
    auto value = Json::parse(*reply, nullptr, false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

} // namespace

class TestProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void awaitedRequestsAreAnswered();
    void otherRequestsAreNeverAnswered();
    void flagsAreSetAndClearedWhenReported();
    void quotedCategoryThroughPastedTexts();
    void damagedAndTruncatedFrames();
    void clientsComeAndGoWithoutBlockingOthers();
    void launchStartsTheAppAndUpdatesRecent();
    void terminalAppRunsInATerminal();
    void failedLaunchIsReported();
    void secondServerOnTheSamePortLeaves();
    void clearRecentOption();
    void cleanupTestCase();

private:
    SrvClient& client() { return m_client; }
    std::vector<std::string> zombieChildren() const;

    TestDesktop m_desktop;
    std::unique_ptr<ServerProcess> m_server;
    SrvClient m_client;
    QString m_marker;
    QString m_brokenProgram;
    QString m_terminalMarker;
    QString m_goAhead;
    QString m_outlived;
};

void TestProtocol::initTestCase()
{
    QVERIFY(m_desktop.isValid());
    const QString system = m_desktop.systemData();
    m_marker = m_desktop.root() + QStringLiteral("/launched.marker");
    const QString script = m_desktop.root() + QStringLiteral("/bin/write-marker");
    QVERIFY(
        TestDesktop::write(script, "#!/bin/sh\necho \"$$\" > '" + m_marker.toUtf8() + "'\n", true));
    // Waits for a go-ahead file, so it can be seen to run on after the server has ended.
    m_goAhead = m_desktop.root() + QStringLiteral("/go-ahead");
    m_outlived = m_desktop.root() + QStringLiteral("/outlived.marker");
    const QString waiter = m_desktop.root() + QStringLiteral("/bin/wait-then-mark");
    QVERIFY(TestDesktop::write(waiter,
                               "#!/bin/sh\nwhile [ ! -e '" + m_goAhead.toUtf8() +
                                   "' ]; do sleep 0.05; done\necho done > '" + m_outlived.toUtf8() +
                                   "'\n",
                               true));
    QVERIFY(TestDesktop::writeEntry(
        system, "waiter.desktop", "Name=Waiter\nExec=" + waiter.toUtf8() + "\n"));
    // Terminal=true: GIO runs the program in the first terminal it finds on PATH; stand-ins for
    // the ones it looks for note how they were called.
    m_terminalMarker = m_desktop.root() + QStringLiteral("/terminal.marker");
    const QString fakeBin = m_desktop.root() + QStringLiteral("/fake-bin");
    for (const char* terminal : { "gnome-terminal",
                                  "nxterm",
                                  "color-xterm",
                                  "rxvt",
                                  "dtterm",
                                  "xterm",
                                  "x-terminal-emulator" })
        QVERIFY(
            TestDesktop::write(fakeBin + u'/' + QLatin1String(terminal),
                               "#!/bin/sh\necho \"$0 $*\" > '" + m_terminalMarker.toUtf8() + "'\n",
                               true));
    QVERIFY(TestDesktop::writeEntry(system,
                                    "console.desktop",
                                    "Name=Console Tool\nTerminal=true\nExec=" + script.toUtf8() +
                                        " --console\n"));
    QVERIFY(TestDesktop::writeEntry(system, "alpha.desktop", "Name=Alpha\nExec=true\n"));
    QVERIFY(TestDesktop::writeEntry(system, "beta.desktop", "Name=Beta\nExec=true\n"));
    QVERIFY(TestDesktop::writeEntry(
        system, "marker.desktop", "Name=Marker\nExec=" + script.toUtf8() + "\n"));
    // GIO lists only entries whose program exists: this one is removed once the server runs.
    m_brokenProgram = m_desktop.root() + QStringLiteral("/bin/soon-gone");
    QVERIFY(TestDesktop::write(m_brokenProgram, "#!/bin/sh\n", true));
    QVERIFY(TestDesktop::writeEntry(
        system, "broken.desktop", "Name=Broken\nExec=" + m_brokenProgram.toUtf8() + "\n"));
    // A store from an earlier run, holding a category name that is not valid JSON once pasted.
    Json store = { { "version", 1 },
                   { "categories",
                     Json::array({ { { "name", kQuoted }, { "apps", { "beta.desktop" } } } }) },
                   { "recent", { "beta.desktop" } } };
    QVERIFY(TestDesktop::write(m_desktop.storePath(), QByteArray::fromStdString(store.dump())));

    m_server = std::make_unique<ServerProcess>(m_desktop);
    m_server->setEnvironmentValue(QStringLiteral("PATH"),
                                  fakeBin + u':' + qEnvironmentVariable("PATH"));
    QVERIFY(m_server->start());
    QVERIFY(m_client.connectTo(m_server->port()));
    // Start from clear flags.
    QVERIFY(jsonReply(m_client, SrvClient::plain("get-menu-data-modified-status")));
}

void TestProtocol::cleanupTestCase()
{
    m_client.close();
    if (m_server)
        QCOMPARE(m_server->quit(), 0);
}

void TestProtocol::awaitedRequestsAreAnswered()
{
    const auto status = jsonReply(client(), SrvClient::plain("get-app-status"));
    QVERIFY(status);
    JCOMPARE(*status, Json::parse(R"({"ready": true, "updateFinished": false})"));
    const auto prefs = jsonReply(client(), SrvClient::plain("get-user-prefs"));
    QVERIFY(prefs);
    JCOMPARE(*prefs, Json::parse(R"({"MenuDensity": 0, "AnimationFx": true, "SaveExpAppCats": true,
                                     "SaveLastMenu": true, "OneExpAppCat": false})"));
    const auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(flags);
    for (const char* key :
         { "appFolderModified", "recentAppsModified", "appcatsModified", "pinnedAppsModified" })
        QVERIFY2((*flags)[key].is_boolean(), key);
    const auto all = jsonReply(client(), SrvClient::plain("get-allapps-menu-data"));
    QVERIFY(all && all->is_array());
    QCOMPARE(all->size(), std::size_t(6));
    const auto mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    QVERIFY(mine && mine->is_object());
    for (const char* key : { "pinnedapps", "appcats", "appcatapps", "renamedAppcats" })
        QVERIFY2(mine->contains(key), key);
    const auto recent = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    QVERIFY(recent && recent->is_array());
    JCOMPARE((*recent)[0]["appkey"], "beta.desktop");
    const auto update = jsonReply(client(), SrvClient::plain("check-update-available"));
    QVERIFY(update);
    JCOMPARE(*update, Json::parse(R"({"isUpdateAvailable": false})"));
    const auto updateStatus = jsonReply(client(), SrvClient::plain("get-app-update-status"));
    QVERIFY(updateStatus);
    JCOMPARE(*updateStatus, Json::parse(R"({"status": "noUpdate"})"));
    const auto toggled = jsonReply(client(), SrvClient::toggleSetAppcat("alpha.desktop", "None"));
    QVERIFY(toggled);
    JCOMPARE(*toggled, Json::parse(R"({"isset": false})"));
}

void TestProtocol::otherRequestsAreNeverAnswered()
{
    // Sent back to back, then one awaited request: the first reply read must be its reply.
    for (const auto& text : { SrvClient::plain("check-updates"),
                              SrvClient::organizer(0, ""),
                              SrvClient::organizer(1, "alpha.desktop"),
                              SrvClient::organizer(2, "a\"b"),
                              SrvClient::withAppkey("get-info-app", "alpha.desktop"),
                              SrvClient::withAppcat("get-info-appcat", kQuoted),
                              SrvClient::plain("app-search"),
                              SrvClient::plain("about"),
                              SrvClient::withAppkey("toggle-pin-app", "not-installed"),
                              SrvClient::withAppkey("launch", "not-installed.desktop"),
                              SrvClient::plain("make-coffee"),
                              std::string("{\"id\": \"launch\"}") })
        QVERIFY(client().send(text));
    const auto status = jsonReply(client(), SrvClient::plain("get-app-status"));
    QVERIFY(status);
    QVERIFY(status->contains("ready"));
    const auto prefs = jsonReply(client(), SrvClient::plain("get-user-prefs"));
    QVERIFY(prefs);
    QVERIFY(prefs->contains("MenuDensity"));
    QVERIFY(m_server->log().contains(QStringLiteral("unknown id \"make-coffee\"")));
}

void TestProtocol::flagsAreSetAndClearedWhenReported()
{
    QVERIFY(client().send(SrvClient::withAppkey("toggle-pin-app", "alpha.desktop")));
    auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(flags);
    JCOMPARE(*flags, Json::parse(R"({"appFolderModified": false, "recentAppsModified": false,
                                     "appcatsModified": false, "pinnedAppsModified": true})"));
    flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["pinnedAppsModified"], false);

    const auto mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["pinnedapps"][0]["appkey"], "alpha.desktop");
    const auto all = jsonReply(client(), SrvClient::plain("get-allapps-menu-data"));
    JCOMPARE((*all)[0]["pinned"], true);

    QVERIFY(client().send(SrvClient::withAppkey("toggle-pin-app", "alpha.desktop")));
    flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["pinnedAppsModified"], true);
    const auto unpinned = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*unpinned)["pinnedapps"], Json::array());
}

void TestProtocol::quotedCategoryThroughPastedTexts()
{
    auto mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    QVERIFY(mine);
    JCOMPARE((*mine)["appcats"], Json::array({ kQuoted }));
    JCOMPARE((*mine)["appcatapps"][kQuoted][0]["appkey"], "beta.desktop");

    auto isSet = jsonReply(client(), SrvClient::toggleSetAppcat("alpha.desktop", kQuoted));
    QVERIFY(isSet);
    JCOMPARE(*isSet, Json::parse(R"({"isset": true})"));
    auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["appcatsModified"], true);
    mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    QCOMPARE((*mine)["appcatapps"][kQuoted].size(), std::size_t(2));

    isSet = jsonReply(client(), SrvClient::toggleSetAppcat("alpha.desktop", kQuoted));
    JCOMPARE(*isSet, Json::parse(R"({"isset": false})"));
    QVERIFY(client().send(SrvClient::withAppcat("get-info-appcat", kQuoted)));
    mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    QCOMPARE((*mine)["appcatapps"][kQuoted].size(), std::size_t(1));
    QVERIFY(m_server->log().contains(QString::fromStdString("for " + kQuoted)));
}

void TestProtocol::damagedAndTruncatedFrames()
{
    SrvClient damaged;
    QVERIFY(damaged.connectTo(m_server->port()));
    QVERIFY(damaged.send(""));
    QVERIFY(damaged.send("garbage"));
    QVERIFY(damaged.send(std::string("\xff\xfe\0\x01", 4)));
    QVERIFY(damaged.send(std::string(65535, '{')));
    QVERIFY(damaged.send("{\n    \"id\": \"launch\",\n    \"appkey\": \"alpha.desktop"));
    // One awaited request cut short is still answered, so the front end stays in step.
    QVERIFY(damaged.send("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"alp"));
    auto reply = damaged.readReply();
    QVERIFY(reply);
    JCOMPARE(Json::parse(*reply), Json::parse(R"({"isset": false})"));
    // A frame written a byte at a time.
    const auto frame = *pomvar::wire::encodeRequestFrame(SrvClient::plain("get-app-status"));
    for (const char byte : frame)
        QVERIFY(damaged.sendRaw(std::string_view(&byte, 1)));
    reply = damaged.readReply();
    QVERIFY(reply);
    QVERIFY(Json::parse(*reply).contains("ready"));
    // A prefix, half a body, and gone.
    QVERIFY(damaged.sendRaw(frame.substr(0, 10)));
    damaged.close();

    SrvClient prefixOnly;
    QVERIFY(prefixOnly.connectTo(m_server->port()));
    QVERIFY(prefixOnly.sendRaw(std::string("\x00", 1)));
    prefixOnly.close();

    const auto status = jsonReply(client(), SrvClient::plain("get-app-status"));
    QVERIFY(status);
    JCOMPARE((*status)["ready"], true);
}

void TestProtocol::clientsComeAndGoWithoutBlockingOthers()
{
    // One client stalls mid-frame, another floods requests and reads nothing.
    SrvClient stalled;
    QVERIFY(stalled.connectTo(m_server->port()));
    QVERIFY(stalled.sendRaw(std::string("\x00\x40{", 3)));
    SrvClient flooding;
    QVERIFY(flooding.connectTo(m_server->port()));
    for (int i = 0; i < 300; ++i)
        QVERIFY(flooding.send(SrvClient::plain("get-allapps-menu-data")));

    for (const char* address : { "127.0.0.1", "::1" }) {
        SrvClient fresh;
        QVERIFY2(fresh.connectTo(m_server->port(), address), address);
        const auto status = jsonReply(fresh, SrvClient::plain("get-app-status"));
        QVERIFY2(status && (*status)["ready"] == true, address);
    }
    // The flooding client gets every reply in order once it reads.
    for (int i = 0; i < 300; ++i) {
        const auto reply = flooding.readReply();
        QVERIFY(reply);
        QCOMPARE(Json::parse(*reply).size(), std::size_t(6));
    }
    // A front end that leaves and comes back is served again.
    m_client.close();
    QVERIFY(m_client.connectTo(m_server->port()));
    QVERIFY(jsonReply(m_client, SrvClient::plain("get-app-status")));
}

std::vector<std::string> TestProtocol::zombieChildren() const
{
    std::vector<std::string> zombies;
    const QString pid = QString::number(m_server->pid());
    for (const auto& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile stat(QStringLiteral("/proc/") + entry + QStringLiteral("/stat"));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QString line = QString::fromUtf8(stat.readAll());
        const auto fields = line.mid(line.lastIndexOf(u')') + 2).split(u' ');
        if (fields.size() > 1 && fields[1] == pid && fields[0] == QStringLiteral("Z"))
            zombies.push_back(entry.toStdString());
    }
    return zombies;
}

void TestProtocol::launchStartsTheAppAndUpdatesRecent()
{
    jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(!QFile::exists(m_marker));
    QVERIFY(client().send(SrvClient::withAppkey("launch", "marker.desktop")));
    // The launch is done when the next request is answered; the app itself runs on its own.
    const auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(flags);
    JCOMPARE((*flags)["recentAppsModified"], true);
    const auto recent = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    QCOMPARE(recent->size(), std::size_t(2));
    JCOMPARE((*recent)[0]["appkey"], "marker.desktop");
    JCOMPARE((*recent)[1]["appkey"], "beta.desktop");

    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_marker), 20000);
    // Whatever GIO spawned in between is reaped: no zombie stays behind.
    QTRY_VERIFY_WITH_TIMEOUT(zombieChildren().empty(), 20000);
}

void TestProtocol::terminalAppRunsInATerminal()
{
    QVERIFY(client().send(SrvClient::withAppkey("launch", "console.desktop")));
    QVERIFY(jsonReply(client(), SrvClient::plain("get-app-status")));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_terminalMarker), 20000);
    QFile marker(m_terminalMarker);
    QVERIFY(marker.open(QIODevice::ReadOnly));
    const QByteArray call = marker.readAll();
    QVERIFY2(call.contains("fake-bin/") && call.contains("write-marker --console"),
             call.constData());
}

void TestProtocol::failedLaunchIsReported()
{
    jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(QFile::remove(m_brokenProgram));
    QVERIFY(client().send(SrvClient::withAppkey("launch", "broken.desktop")));
    const auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["recentAppsModified"], false);
    QVERIFY2(m_server->log().contains(QStringLiteral("cannot launch broken.desktop")),
             qPrintable(m_server->log()));
    // Recent is unchanged: the last app that did start is still first.
    const auto recent = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    JCOMPARE((*recent)[0]["appkey"], "console.desktop");
}

void TestProtocol::secondServerOnTheSamePortLeaves()
{
    const auto recentBefore = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    const QByteArray storeBefore = [&] {
        QFile store(m_desktop.storePath());
        return store.open(QIODevice::ReadOnly) ? store.readAll() : QByteArray();
    }();
    ServerProcess second(m_desktop);
    QCOMPARE(second.runToExit(m_server->port(),
                              { QStringLiteral("--clear-recent"), QStringLiteral("--refresh") }),
             0);
    QVERIFY2(second.log().contains(QStringLiteral("already in use")), qPrintable(second.log()));
    // The running server's store and icons are not the leaving one's to touch.
    QFile store(m_desktop.storePath());
    QVERIFY(store.open(QIODevice::ReadOnly));
    QCOMPARE(store.readAll(), storeBefore);
    QVERIFY(QDir(m_desktop.iconCache()).exists());
    const auto recentAfter = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    QVERIFY(recentAfter && *recentAfter == *recentBefore);
    QVERIFY(!recentAfter->empty());
}

void TestProtocol::clearRecentOption()
{
    // An app launched just before the server ends goes on running after it.
    QVERIFY(client().send(SrvClient::withAppkey("launch", "waiter.desktop")));
    QVERIFY(jsonReply(client(), SrvClient::plain("get-app-status")));
    m_client.close();
    QCOMPARE(m_server->quit(), 0);
    QVERIFY(TestDesktop::write(m_goAhead, "go"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_outlived), 20000);

    struct stat status
    {};
    QCOMPARE(::stat(QFile::encodeName(m_desktop.storePath()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, 0600u);

    m_server = std::make_unique<ServerProcess>(m_desktop);
    QVERIFY(m_server->start({ QStringLiteral("--clear-recent") }));
    QVERIFY(m_client.connectTo(m_server->port()));
    const auto flags = jsonReply(client(), SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["recentAppsModified"], true);
    const auto recent = jsonReply(client(), SrvClient::plain("get-recentapps-menu-data"));
    JCOMPARE(*recent, Json::array());
    QVERIFY(m_server->log().contains(QStringLiteral("clearing the recent apps")));
    // The rest of the store survives.
    const auto mine = jsonReply(client(), SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["appcats"], Json::array({ kQuoted }));
}

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"
