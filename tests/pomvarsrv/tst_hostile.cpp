// Hostile inputs through the real server, each test named by what must hold. Throughout, two
// other processes keep 20,000 sockets in the table, so every peer check runs against it. The
// markup test drives the server run in-process, whose GUI thread it watches; the rest talk to a
// real server over TCP. A client that needs a namespace the kernel refuses is skipped.
#include "InProcessServer.h"
#include "NotificationService.h"
#include "ServerProcess.h"
#include "SessionBus.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Frame.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QToolTip>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace pomvar::test;
using Json = nlohmann::json;
namespace rq = pomvar::request;

namespace {

constexpr const char* kApp = "markup.desktop";

// Holds 5,000 connected pairs of loopback sockets until its input closes.
const char* const kHoldSockets = R"(import resource, socket, sys
hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, 10100), hard))
listener = socket.create_server(("127.0.0.1", 0), backlog=4096)
held = []
for _ in range(5000):
    held.append(socket.create_connection(listener.getsockname()))
    held.append(listener.accept()[0])
print("ready", flush=True)
sys.stdin.read())";

std::string frame(std::string_view body)
{
    return *pomvar::wire::encodeRequestFrame(body);
}

// Frames that would pin, launch and quit, had they been read.
std::string actedOn()
{
    return frame(rq::togglePinApp("alpha.desktop")) + frame(rq::launch("marker.desktop")) +
           frame(rq::plain(rq::quit));
}

// The process's open descriptors and what each is.
std::map<int, std::string> descriptors(qint64 pid)
{
    const QString folder = QStringLiteral("/proc/%1/fd/").arg(pid);
    std::map<int, std::string> open;
    for (const QString& fd : QDir(folder).entryList(QDir::AllEntries | QDir::System)) {
        char target[64] = {};
        ::readlink(QFile::encodeName(folder + fd).constData(), target, sizeof target - 1);
        open.emplace(fd.toInt(), target);
    }
    return open;
}

int socketsOf(qint64 pid)
{
    return int(std::ranges::count_if(
        descriptors(pid), [](const auto& fd) { return fd.second.starts_with("socket:["); }));
}

// The descriptor the process's next open would get: the lowest free.
rlim_t nextDescriptor(qint64 pid)
{
    rlim_t next = 0;
    for (const auto& fd : descriptors(pid))
        next += rlim_t(fd.first) == next;
    return next;
}

bool limitDescriptors(qint64 pid, rlim_t count)
{
    rlimit limit;
    if (::prlimit(pid_t(pid), RLIMIT_NOFILE, nullptr, &limit) != 0)
        return false;
    limit.rlim_cur = std::min(count, limit.rlim_max);
    return ::prlimit(pid_t(pid), RLIMIT_NOFILE, &limit, nullptr) == 0;
}

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(limitDescriptors(::getpid(), 4096)); // for 1,100 openings
        QVERIFY(m_bus.start());
        m_bus.useInThisProcess();
        QVERIFY(m_notifications.start());
        m_withBus.insert("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        for (QProcess& holder : m_table) {
            holder.start("python3", { "-c", kHoldSockets });
            QTRY_VERIFY_WITH_TIMEOUT(holder.canReadLine(), 60000);
            QCOMPARE(holder.readLine(), "ready\n");
        }
        // In-process: an app and a category named as markup that reads a FIFO.
        const QString gui = m_gui.root();
        m_fifo = gui + "/fifo";
        m_markup = "<img src=" + m_fifo + ">";
        QVERIFY(::mkfifo(QFile::encodeName(m_fifo), 0600) == 0);
        QVERIFY(TestDesktop::write(gui + "/bin/soon-gone", "#!/bin/sh\n", true));
        QVERIFY(TestDesktop::writeEntry(m_gui.systemData(),
                                        "markup.desktop",
                                        "Name=" + m_markup.toUtf8() +
                                            "\nGenericName=" + m_markup.toUtf8() +
                                            "\nExec=" + gui.toUtf8() + "/bin/soon-gone\n"));
        Json store{ { "version", 1 },
                    { "categories",
                      { { { "name", m_markup.toStdString() }, { "apps", { kApp } } } } } };
        QVERIFY(TestDesktop::write(m_gui.storePath(), QByteArray::fromStdString(store.dump())));
        InProcessServer::useDesktop(m_gui);
        QVERIFY(m_inProcess.start());
        QVERIFY(QFile::remove(gui + "/bin/soon-gone")); // its launch fails from now on
        // The real server: an app, and one that notes each launch.
        const QString root = m_desktop.root();
        m_marker = root + "/bin/marker";
        QVERIFY(TestDesktop::write(m_marker, "#!/bin/sh\ntouch \"$0.launched\"\n", true));
        QVERIFY(
            TestDesktop::writeEntry(m_desktop.systemData(), "alpha.desktop", "Name=A\nExec=true"));
        QVERIFY(TestDesktop::writeEntry(
            m_desktop.systemData(), "marker.desktop", "Name=M\nExec=" + m_marker.toUtf8()));
        QVERIFY(TestDesktop::write(m_desktop.storePath(), R"({"version": 1})"));
        m_server = std::make_unique<ServerProcess>(m_desktop, m_withBus);
        QVERIFY(m_server->start());
    }

    // Markup in a name shows as text; the GUI thread never opens <img src=FIFO>.
    void markupIsShownAsText()
    {
        // A reader that opens the FIFO waits for a writer: this one tells, and lets it go on.
        std::atomic<bool> opened = false, done = false;
        std::thread watchdog([&] {
            const QByteArray path = QFile::encodeName(m_fifo);
            while (!done) {
                if (const int fd = ::open(path, O_WRONLY | O_NONBLOCK | O_CLOEXEC); fd >= 0) {
                    opened = true;
                    ::close(fd);
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        const std::string category = m_markup.toStdString();
        QVERIFY(m_inProcess.send(rq::organizer(pomvar::OrganizerDlgMode::organize, category)));
        QWidget* organizer = InProcessServer::waitForWindow("organizerWindow");
        QVERIFY(organizer);
        for (QListView* list : organizer->findChildren<QListView*>()) {
            for (int row = 0; row < list->model()->rowCount(); ++row) {
                const QPoint at = list->visualRect(list->model()->index(row, 0)).center();
                QHelpEvent tip(QEvent::ToolTip, at, list->viewport()->mapToGlobal(at));
                QApplication::sendEvent(list->viewport(), &tip);
                QVERIFY2(QToolTip::text().contains("&lt;img"), qPrintable(QToolTip::text()));
            }
        }
        organizer->findChild<QPushButton*>("deleteCategory")->click();
        QVERIFY(InProcessServer::waitForWindow("deleteCategoryConfirmation"));
        for (const std::string& request :
             { rq::organizer(pomvar::OrganizerDlgMode::organizeApp, kApp),
               rq::launch(kApp),
               rq::getInfoApp(kApp),
               rq::getInfoAppcat(category) })
            QVERIFY(m_inProcess.send(request));
        for (const char* window : { "pomvarsrvNotice", "appInfoWindow", "categoryInfoWindow" })
            QVERIFY2(InProcessServer::waitForWindow(window), window);
        QTRY_VERIFY(organizer->findChild<QLabel*>("appName")->isVisible());
        done = true;
        watchdog.join();
        QVERIFY(!opened);
        for (QWidget* window : QApplication::topLevelWidgets()) {
            for (QLabel* label : window->findChildren<QLabel*>()) {
                if (label->text().contains("<img"))
                    QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
            }
        }
    }

    // HTTP, WebSocket, HTTP/2, TLS and malformed openings are closed at once, unread.
    void openingsNotOursAreClosedUnread()
    {
        // A browser's POST padded so that the frames start where "PO", read as a length, ends.
        std::string post = "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: text/plain\r\n\r\n";
        post.resize(2 + ('P' << 8 | 'O'), ' ');
        const std::string openings[] = {
            post,
            "GET / HTTP/1.1\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
            "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n",
            "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n",
            std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11), // a TLS ClientHello
            frame("garbage"),
            frame("{\n    \"id\": \"toggle-set-appcat\",\n    \"appkey\": \"al"),
        };
        for (const std::string& opening : openings) {
            SrvClient client;
            QElapsedTimer closing;
            QVERIFY(client.connectTo(m_server->port()));
            closing.start();
            client.sendRaw(opening + actedOn()); // may fail midway: the server hangs up
            QVERIFY(!client.readReply() && !client.isConnected());
            QVERIFY(closing.elapsed() < 1500); // at once, not when the first request is late
        }
        QVERIFY(nothingActedOn());
    }

    // A connection without a whole first request is closed after 2 s, an established one never.
    void halfFramesAreClosedButEstablishedClientsNever()
    {
        // A get-user-prefs body padded to 64 bytes, to be sent in two halves.
        std::string body = R"({"id": "get-user-prefs"})";
        body.resize(64, ' ');
        SrvClient established, half, silent;
        QVERIFY(established.connectTo(m_server->port()) &&
                established.json(rq::plain(rq::getUserPrefs)).is_object());
        QVERIFY(established.sendRaw(frame(body).substr(0, 3)));
        QVERIFY(half.connectTo(m_server->port()) && half.sendRaw(frame(body).substr(0, 3)));
        QVERIFY(silent.connectTo(m_server->port()));
        QVERIFY(!half.readReply() && !half.isConnected());
        QVERIFY(!silent.readReply() && !silent.isConnected());
        QVERIFY(established.sendRaw(body.substr(1)));
        QVERIFY(established.readReply());
    }

    // 1,100 held openings hold at most 32 sockets; a new client is served, its launch runs.
    void heldOpeningsHoldAtMost32Descriptors()
    {
        // As a desktop session gives.
        const auto restore = qScopeGuard([this] { limitDescriptors(m_server->pid(), 1024); });
        QVERIFY(limitDescriptors(m_server->pid(), 1024));
        const int before = socketsOf(m_server->pid());
        std::vector<std::unique_ptr<QTcpSocket>> held;
        for (int i = 0; i < 1100; ++i) {
            auto& socket = held.emplace_back(std::make_unique<QTcpSocket>());
            socket->connectToHost(QHostAddress::LocalHost, m_server->port());
            QVERIFY(socket->waitForConnected(20000));
            socket->write("\x16", 1); // a TLS record, never completed
        }
        SrvClient fresh;
        QVERIFY(fresh.connectTo(m_server->port()));
        QVERIFY(fresh.json(rq::plain(rq::getUserPrefs)).is_object());
        QVERIFY(fresh.send(rq::launch("marker.desktop")));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_marker + ".launched"), 20000);
        QVERIFY(QFile::remove(m_marker + ".launched"));
        // The new client's and perhaps the session bus's besides.
        QVERIFY(socketsOf(m_server->pid()) <= before + 32 + 2);
    }

    // A server out of descriptors accepts again once it has some.
    void acceptingResumesOnceDescriptorsAreFree()
    {
        ServerProcess server(m_desktop);
        QVERIFY(server.start());
        // Not one descriptor more, so that the next accept fails; again should the server
        // still be closing one, which frees a lower one. Each client stays.
        std::vector<std::unique_ptr<SrvClient>> clients;
        bool failed = false;
        while (!failed && clients.size() < 10) {
            QVERIFY(limitDescriptors(server.pid(), nextDescriptor(server.pid())));
            auto& client = clients.emplace_back(std::make_unique<SrvClient>());
            QVERIFY(client->connectTo(server.port()) && client->send(rq::plain(rq::getUserPrefs)));
            failed = QTest::qWaitFor([&] { return server.log().contains("cannot accept"); }, 1000);
        }
        QVERIFY(failed);
        QVERIFY(limitDescriptors(server.pid(), 1024));
        QVERIFY(clients.back()->readReply());
    }

    // A client of this user in these namespaces is served; another user's, or one in another
    // user namespace (a sandbox on the same network) or mount namespace, is refused. A shell
    // client sends a request it awaits (when it should be served) or frames that would pin,
    // launch and quit, then prints what it reads back: nothing, when the server hangs up.
    void onlyClientsOfThisUserAndNamespacesAreServed_data()
    {
        QTest::addColumn<QStringList>("prefix"); // runs the client; none for the served one
        QTest::newRow("this user and namespaces") << QStringList();
        QTest::newRow("another user")
            << QStringList{ "setpriv", "--reuid=65534", "--regid=65534", "--clear-groups" };
        QTest::newRow("another user namespace")
            << QStringList{ "unshare", "--user", "--map-current-user" };
        QTest::newRow("another mount namespace") << QStringList{ "unshare", "--mount" };
    }
    void onlyClientsOfThisUserAndNamespacesAreServed()
    {
        QFETCH(QStringList, prefix);
        const bool served = prefix.isEmpty();
        // Another user needs root; a namespace, a kernel that allows it.
        if (!served && QProcess::execute(prefix[0], prefix.mid(1) << "true") != 0)
            QSKIP(qPrintable("cannot run " + prefix.join(' ')));
        const std::string frames = served ? frame(rq::plain(rq::getUserPrefs)) : actedOn();
        const QString script =
            QStringLiteral("exec 3<>/dev/tcp/127.0.0.1/%1 || exit 3\ncat >&3\nhead -c 4 <&3")
                .arg(m_server->port());
        QProcess client;
        client.start("timeout", QStringList{ "20" } + prefix + QStringList{ "bash", "-c", script });
        client.write(frames.data(), qint64(frames.size()));
        client.closeWriteChannel();
        // 124: timed out, the connection was left open; 3: no connection at all.
        QVERIFY(client.waitForFinished(30000) && !(QList{ 3, 124 }.contains(client.exitCode())));
        QVERIFY2(client.readAllStandardOutput().size() == (served ? 4 : 0),
                 qPrintable(m_server->log().right(2000)));
        QVERIFY(nothingActedOn());
    }

    // A stalled and a flooding client block no one.
    void aStalledAndAFloodingClientBlockNoOne()
    {
        SrvClient stalled, flooding;
        QVERIFY(stalled.connectTo(m_server->port()) &&
                stalled.json(rq::plain(rq::getUserPrefs)).is_object());
        QVERIFY(stalled.sendRaw(std::string("\x00\x40{", 3)));
        QVERIFY(flooding.connectTo(m_server->port()));
        for (int i = 0; i < 300; ++i)
            QVERIFY(flooding.send(rq::plain(rq::getAllAppsMenuData)));
        for (const QString address : { "127.0.0.1", "::1" }) {
            SrvClient fresh;
            QVERIFY(fresh.connectTo(m_server->port(), address));
            QVERIFY(fresh.json(rq::plain(rq::getUserPrefs)).is_object());
        }
        // The flooding client gets every reply, in order, once it reads.
        for (int i = 0; i < 300; ++i)
            QVERIFY(Json::parse(flooding.readReply().value_or("null")).is_array());
    }

    // What stands in place of the store: a FIFO is set aside unopened, a symbolic link set aside
    // with its target untouched, a store over 16 MiB set aside, the user told each time; a store
    // of 200,000 pins, each twice, loads with each once; in a read-only config folder the change
    // is served and the user told it will not survive.
    void oddStoresAreSetAsideOrServed_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : { "fifo", "link", "huge", "duplicates", "read-only" })
            QTest::newRow(kind) << QString(kind);
    }
    void oddStoresAreSetAsideOrServed()
    {
        QFETCH(QString, kind);
        TestDesktop desktop;
        QVERIFY(
            TestDesktop::writeEntry(desktop.systemData(), "alpha.desktop", "Name=A\nExec=true"));
        const QString store = desktop.storePath(), elsewhere = desktop.root() + "/elsewhere.json";
        const QString folder = QFileInfo(store).path();
        const QByteArray pinned = R"({"version": 1, "pins": ["alpha.desktop"]})";
        QVERIFY(QDir().mkpath(folder));
        if (kind == "fifo")
            QVERIFY(::mkfifo(QFile::encodeName(store), 0600) == 0);
        else if (kind == "link")
            QVERIFY(TestDesktop::write(elsewhere, pinned) && QFile::link(elsewhere, store));
        else if (kind == "huge")
            QVERIFY(TestDesktop::write(store, pinned + QByteArray(17 << 20, ' ')));
        else if (kind == "duplicates") {
            Json pins = Json::array();
            for (int i = 0; i < 200000; ++i)
                pins.push_back("app" + std::to_string(i % 100000) + ".desktop");
            QVERIFY(TestDesktop::write(
                store,
                QByteArray::fromStdString(Json{ { "version", 1 }, { "pins", pins } }.dump())));
        } else
            QVERIFY(TestDesktop::write(store, R"({"version": 1})") &&
                    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const auto writable = qScopeGuard([&] {
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        });
        // Root writes anywhere, unless it lacks the capability.
        const QString asUser = "setpriv --inh-caps=-dac_override,-dac_read_search "
                               "--bounding-set=-dac_override,-dac_read_search --";
        const bool dropCaps = ::getuid() == 0 && kind == "read-only";
        ServerProcess server(desktop, m_withBus, dropCaps ? asUser.split(' ') : QStringList());
        QVERIFY(server.start()); // a FIFO never hangs it
        SrvClient client;
        QVERIFY(client.connectTo(server.port()) && client.send(rq::togglePinApp("alpha.desktop")));
        QCOMPARE(client.json(rq::plain(rq::getMyAppsMenuData))["pinnedapps"].size(), 1u);
        const QStringList aside = QFileInfo(store).dir().entryList(
            { "pomvarsrv.json.bad-*" }, QDir::AllEntries | QDir::System | QDir::Hidden);
        if (kind == "read-only") {
            QTRY_VERIFY(!m_notifications.bodies().filter("will not survive a restart").isEmpty());
            QCOMPARE(TestDesktop::read(store), QByteArray(R"({"version": 1})"));
            return;
        }
        if (kind == "duplicates") {
            QVERIFY(aside.isEmpty());
            const Json saved = Json::parse(TestDesktop::read(store).toStdString());
            QCOMPARE(saved["pins"].size(), 100001u); // each once, and the new one
            return;
        }
        QCOMPARE(aside.size(), 1);
        const QFileInfo kept(QFileInfo(store).dir().filePath(aside[0]));
        QCOMPARE(kept.isSymLink(), kind == "link");
        QCOMPARE(kept.size() > (16 << 20), kind == "huge");
        QCOMPARE(TestDesktop::read(elsewhere), kind == "link" ? pinned : QByteArray());
        QTRY_VERIFY(!m_notifications.bodies().filter(kept.filePath()).isEmpty());
    }

private:
    // The server runs, nothing is pinned and nothing was launched.
    bool nothingActedOn()
    {
        SrvClient client;
        return m_server->isRunning() && client.connectTo(m_server->port()) &&
               client.json(rq::plain(rq::getMyAppsMenuData))["pinnedapps"].empty() &&
               !QFile::exists(m_marker + ".launched");
    }

    SessionBus m_bus;
    NotificationService m_notifications;
    QProcessEnvironment m_withBus;
    QProcess m_table[2];
    TestDesktop m_gui, m_desktop;
    QString m_fifo, m_markup, m_marker;
    InProcessServer m_inProcess;
    std::unique_ptr<ServerProcess> m_server;
};

QTEST_MAIN(TestHostile)
#include "tst_hostile.moc"
