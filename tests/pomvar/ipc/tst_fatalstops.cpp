// A broken server contract stops the front end, naming the fault: records with a missing or
// mistyped field, menu data that does not hold together, an oversized request, a port out of
// range. A refused connection ends it with status 1; a zero-length reply leaves it waiting.
#include "ChildProcess.h"
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"

#include <QSettings>
#include <QTcpServer>
#include <QTest>

#include <array>

using namespace pomvar::test;
using Reply = FakeRuntimeServer::Reply;

namespace {

ChildOutcome runDriver(int port, const QByteArray& command, int waitMs = 15000)
{
    return runChild(qEnvironmentVariable("LINK_DRIVER"),
                    { QString::number(port), QString::fromLatin1(command) },
                    waitMs);
}

} // namespace

class TestFatalStops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void brokenRepliesStopTheProcessNamingTheFault()
    {
        nlohmann::json prefs = FakeMenus::prefs(0, true, false);
        prefs["MenuDensity"] = 1.5;
        const std::string density = prefs.dump();
        prefs["MenuDensity"] = 1;
        prefs["AnimationFx"] = 1;
        const std::string animation = prefs.dump();
        // The driver's command, the request answered, its reply (empty: the server closes the
        // connection), and the fault the message must name.
        const std::array<std::string, 4> rows[] = {
            { "user-prefs", "get-user-prefs", density, "non-integral number" },
            { "user-prefs", "get-user-prefs", animation, "\"AnimationFx\" must be a boolean" },
            { "user-prefs", "get-user-prefs", "", "no reply to 'get-user-prefs'" },
            { "app-status", "get-app-status", R"({"ready": true})", "\"updateFinished\" is" },
            { "app-status", "get-app-status", "[true, false]", "not an object" },
            { "app-status", "get-app-status", "ready", "not JSON" },
            { "oversize", "", "", "65536" },
            { "build", "check-update-available", "{", "no reply to 'check-update-available'" },
            { "toggle", "toggle-set-appcat", "{}", "\"isset\"" },
            { "poll", "get-app-update-status", "{}", "\"status\"" },
            { "build", "get-myapps-menu-data", R"({"appcats": ["Ghost"]})", "\"Ghost\"" },
            // A member All Apps (empty) does not list.
            { "build",
              "get-myapps-menu-data",
              R"({"appcats": ["W"], "appcatapps": {"W": [{"appkey": "x"}]}})",
              "\"x\", which" },
            { "build", "get-myapps-menu-data", R"({"renamedAppcats": [{"old": 1}]})", "\"new\":" },
        };
        // A saved expansion map makes the rename list count.
        QSettings(QSettings::IniFormat, QSettings::UserScope, "pomvar", "pomvar")
            .setValue("ExpandedAppCats", QVariantMap{ { "W", true } });
        for (const auto& [command, id, reply, fault] : rows) {
            FakeRuntimeServer server;
            QVERIFY(server.listen());
            server.setDefaultReply(id, reply.empty() ? Reply::close() : Reply::text(reply));
            const ChildOutcome outcome =
                runDriver(server.port(), QByteArray::fromStdString(command));
            QVERIFY2(outcome.crashed() && outcome.err.contains(fault), fault.c_str());
        }
    }

    void aRefusedConnectionExitsWithStatusOne()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            port = probe.serverPort();
        }
        const ChildOutcome outcome = runDriver(port, "app-status");
        QVERIFY(outcome.exitedWith(1));
        QCOMPARE(outcome.out, QByteArray("Pomvar: PomvarViewModel: Error: Connection refused\n"));
    }

    void aPortOutOfRangeStopsBeforeConnecting()
    {
        const ChildOutcome outcome = runDriver(70000, "app-status");
        QVERIFY(outcome.crashed());
        QVERIFY2(outcome.err.contains("invalid port 70000"), outcome.err.constData());
    }

    void aZeroLengthReplyLeavesTheCallerWaiting()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("get-app-status", Reply::empty());
        QVERIFY(!runDriver(server.port(), "app-status", 1500).finished);
    }
};

QTEST_GUILESS_MAIN(TestFatalStops)
#include "tst_fatalstops.moc"
