// The store on disk when the server dies: SIGKILL at random moments of a burst of changes
// leaves a store that loads and holds the state before or after the change in flight; an
// unreadable store is kept aside and the server starts from defaults.
#include "ServerProcess.h"
#include "SrvClient.h"
#include "Store.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <thread>

using namespace pomvar::test;
using pomvar::srv::Store;
using Json = nlohmann::json;

namespace {

constexpr int kApps = 10;
constexpr int kChanges = 1000;
constexpr int kKills = 4;
const std::string kCategories[] = { "Burst", "Other \"one\"" };

using Members = std::vector<std::vector<std::string>>; // per category, in order

void toggle(Members& members, int category, const std::string& app)
{
    auto& list = members[static_cast<std::size_t>(category)];
    const auto it = std::find(list.begin(), list.end(), app);
    if (it == list.end())
        list.push_back(app);
    else
        list.erase(it);
}

std::optional<Members> storedMembers(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    const auto store = Store::fromJson(Json::parse(bytes.toStdString(), nullptr, false));
    if (!store)
        return std::nullopt;
    Members members;
    for (const auto& name : kCategories) {
        const auto* category = store->category(name);
        if (!category)
            return std::nullopt;
        members.push_back(category->apps);
    }
    return members;
}

} // namespace

class TestStoreSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void killedDuringABurstOfChanges();
    void unreadableStoreIsKeptAside();

private:
    TestDesktop m_desktop;
};

void TestStoreSafety::initTestCase()
{
    QVERIFY(m_desktop.isValid());
    for (int i = 0; i < kApps; ++i)
        QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(),
                                        QStringLiteral("app%1.desktop").arg(i),
                                        "Name=App " + QByteArray::number(i) + "\nExec=true\n"));
}

void TestStoreSafety::killedDuringABurstOfChanges()
{
    Json seed = { { "version", 1 }, { "categories", Json::array() } };
    for (const auto& name : kCategories)
        seed["categories"].push_back({ { "name", name }, { "apps", Json::array() } });
    QVERIFY(TestDesktop::write(m_desktop.storePath(), QByteArray::fromStdString(seed.dump())));

    const quint32 randomSeed = QRandomGenerator::global()->generate();
    qInfo("random seed %u", randomSeed);
    QRandomGenerator random(randomSeed);
    // Where each round is cut short, spread over the burst.
    std::vector<int> killAt;
    for (int round = 0; round < kKills; ++round)
        killAt.push_back(round * kChanges / kKills + random.bounded(kChanges / kKills - 1));

    Members confirmed(std::size(kCategories));
    int change = 0;
    for (int round = 0; round <= kKills && change < kChanges; ++round) {
        ServerProcess server(m_desktop);
        QVERIFY(server.start());
        SrvClient client;
        QVERIFY(client.connectTo(server.port()));
        const int stop = round < kKills ? killAt[static_cast<std::size_t>(round)] : kChanges;
        for (; change < kChanges; ++change) {
            const int category = static_cast<int>(random.bounded(2));
            const std::string app = "app" + std::to_string(random.bounded(kApps)) + ".desktop";
            Members next = confirmed;
            toggle(next, category, app);
            QVERIFY(client.send(pomvar::request::toggleSetAppcat(app, kCategories[category])));
            if (change == stop) {
                // Killed while this change is in flight, at a random point of its handling.
                std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000)));
                server.kill();
                const auto stored = storedMembers(m_desktop.storePath());
                QVERIFY2(stored.has_value(), "the store does not load after SIGKILL");
                QVERIFY2(
                    *stored == confirmed || *stored == next,
                    qPrintable(QStringLiteral("change %1: neither before nor after").arg(change)));
                confirmed = *stored;
                ++change;
                break;
            }
            const auto reply = client.readReply();
            QVERIFY(reply);
            const auto& list = next[static_cast<std::size_t>(category)];
            const bool nowSet = std::find(list.begin(), list.end(), app) != list.end();
            QCOMPARE(Json::parse(*reply)["isset"].get<bool>(), nowSet);
            confirmed = std::move(next);
        }
        if (server.isRunning()) {
            client.close();
            QCOMPARE(server.quit(), 0);
            QVERIFY(storedMembers(m_desktop.storePath()) == confirmed);
        }
        // Saving the store is no change to the installed apps.
        QVERIFY(!server.log().contains(QStringLiteral("the installed apps changed")));
    }
    QCOMPARE(change, kChanges);
    // Interrupted writes leave no debris beside the store.
    const QDir folder(QFileInfo(m_desktop.storePath()).absolutePath());
    QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden),
             QStringList{ QStringLiteral("pomvarsrv.json") });
}

void TestStoreSafety::unreadableStoreIsKeptAside()
{
    const QByteArray garbage = "{\"version\": 1, \"pins\": [\"app1.desktop\"";
    QVERIFY(TestDesktop::write(m_desktop.storePath(), garbage));
    ServerProcess server(m_desktop);
    QVERIFY(server.start());
    QVERIFY(server.log().contains(QStringLiteral("kept as")));

    const QDir folder(QFileInfo(m_desktop.storePath()).absolutePath());
    const QStringList aside = folder.entryList({ QStringLiteral("pomvarsrv.json.corrupt-*") });
    QCOMPARE(aside.size(), 1);
    QFile kept(folder.filePath(aside.first()));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), garbage);

    SrvClient client;
    QVERIFY(client.connectTo(server.port()));
    const auto mine = client.request(pomvar::request::plain(pomvar::request::getMyAppsMenuData));
    QVERIFY(mine);
    QVERIFY(Json::parse(*mine)["appcats"] == Json::array());
    // The next change writes a fresh store; what was kept aside stays.
    QVERIFY(client.send(pomvar::request::togglePinApp("app3.desktop")));
    QVERIFY(client.request(pomvar::request::plain(pomvar::request::getAppStatus)));
    const auto pins = Store::fromJson(Json::parse(
        [&] {
            QFile store(m_desktop.storePath());
            store.open(QIODevice::ReadOnly);
            return store.readAll().toStdString();
        }(),
        nullptr,
        false));
    QVERIFY(pins.has_value());
    QCOMPARE(pins->pins(), std::vector<std::string>{ "app3.desktop" });
    QVERIFY(QFile::exists(folder.filePath(aside.first())));
    client.close();
    QCOMPARE(server.quit(), 0);
}

QTEST_GUILESS_MAIN(TestStoreSafety)
#include "tst_storesafety.moc"
