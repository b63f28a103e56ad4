// The store on disk when the server dies: SIGKILL at random moments of a burst of changes
// leaves a store that loads and holds the state before or after the change in flight. What an
// unreadable store becomes is tst_servermodel's.
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "pomvarsrv/model/Store.h"
#include "wire/Protocol.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <thread>

using namespace pomvar::test;
using Apps = std::vector<std::string>;

class TestStoreSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killedDuringABurstOfChanges()
    {
        constexpr int kApps = 10, kKills = 4;
        TestDesktop desktop;
        for (int i = 0; i < kApps; ++i)
            QVERIFY(TestDesktop::writeEntry(desktop.systemData(),
                                            QStringLiteral("app%1.desktop").arg(i),
                                            "Name=App " + QByteArray::number(i) + "\nExec=true\n"));
        QVERIFY(TestDesktop::write(desktop.storePath(),
                                   R"({"version": 1, "categories": [{"name": "Burst"}]})"));
        // The members of "Burst" as stored; nothing when the store does not load.
        const auto stored = [&]() -> std::optional<Apps> {
            const auto store = pomvar::srv::Store::fromJson(nlohmann::json::parse(
                TestDesktop::read(desktop.storePath()).toStdString(), nullptr, false));
            const auto* category = store ? store->category("Burst") : nullptr;
            return category ? std::optional(category->apps) : std::nullopt;
        };
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("random seed %u", seed);
        QRandomGenerator random(seed);
        Apps confirmed;
        // Some 200 changes a round; each round but the last is killed during its last change.
        for (int round = 0; round <= kKills; ++round) {
            ServerProcess server(desktop);
            SrvClient client;
            QVERIFY(server.start() && client.connectTo(server.port()));
            for (int left = random.bounded(150, 250); left >= 0; --left) {
                const std::string app = "app" + std::to_string(random.bounded(kApps)) + ".desktop";
                Apps next = confirmed;
                const auto it = std::find(next.begin(), next.end(), app);
                const bool set = it == next.end();
                set ? next.push_back(app) : void(next.erase(it));
                const std::string body = pomvar::request::toggleSetAppcat(app, "Burst");
                if (left > 0 || round == kKills) {
                    JCOMPARE(client.json(body)["isset"], set);
                    confirmed = std::move(next);
                    continue;
                }
                QVERIFY(client.send(body));
                // At a random point of its handling.
                std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000)));
                server.kill();
                const auto kept = stored();
                QVERIFY2(kept == confirmed || kept == next,
                         "the store is neither before nor after");
                confirmed = *kept;
            }
            if (round == kKills) {
                client.close();
                QCOMPARE(server.quit(), 0);
                QVERIFY(stored() == confirmed);
            }
            // Saving the store is no change to the installed apps.
            QVERIFY(!server.log().contains(QStringLiteral("the installed apps changed")));
        }
        // Interrupted writes leave no debris beside the store.
        QCOMPARE(QFileInfo(desktop.storePath()).dir().entryList(QDir::Files | QDir::Hidden),
                 QStringList{ QStringLiteral("pomvarsrv.json") });
    }
};

QTEST_GUILESS_MAIN(TestStoreSafety)
#include "tst_storesafety.moc"
