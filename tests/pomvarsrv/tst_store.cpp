// The user's store: its operations, its file (mode, atomic replacement, an unreadable file kept
// aside) and the JSON it is kept in.
#include "Store.h"
#include "StoreFile.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using pomvar::srv::Store;
using pomvar::srv::StoreFile;
using pomvar::srv::UserPrefs;

class TestStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pins();
    void categories();
    void recentIsUniqueAndBounded();
    void jsonRoundTrip();
    void rejectsWhatIsNotAStore();
    void fileIsPrivateAndReloads();
    void unreadableFileIsKeptAside();
};

void TestStore::pins()
{
    Store store;
    QVERIFY(store.togglePin("a"));
    QVERIFY(store.togglePin("b"));
    QVERIFY(store.isPinned("a"));
    QVERIFY(!store.togglePin("a"));
    QVERIFY(!store.isPinned("a"));
    QVERIFY(store.togglePin("a"));
    QCOMPARE(store.pins(), (std::vector<std::string>{ "b", "a" }));
}

void TestStore::categories()
{
    Store store;
    QVERIFY(!store.createCategory(""));
    QVERIFY(store.createCategory("Work"));
    QVERIFY(!store.createCategory("Work"));
    QVERIFY(store.createCategory("Say \"hi\""));
    QCOMPARE(store.toggleMember("x", "Work"), std::optional(true));
    QCOMPARE(store.toggleMember("y", "Work"), std::optional(true));
    QCOMPARE(store.toggleMember("x", "Work"), std::optional(false));
    QCOMPARE(store.toggleMember("x", "Nope"), std::optional<bool>());
    QVERIFY(!store.renameCategory("Work", "Say \"hi\""));
    QVERIFY(!store.renameCategory("Work", ""));
    QVERIFY(store.renameCategory("Work", "Play"));
    QVERIFY(!store.category("Work"));
    QCOMPARE(store.category("Play")->apps, std::vector<std::string>{ "y" });
    QVERIFY(store.deleteCategory("Say \"hi\""));
    QVERIFY(!store.deleteCategory("Say \"hi\""));
    QCOMPARE(store.categories().size(), std::size_t(1));
}

void TestStore::recentIsUniqueAndBounded()
{
    Store store;
    for (int i = 0; i < 20; ++i)
        store.pushRecent("app" + std::to_string(i));
    store.pushRecent("app15");
    QCOMPARE(store.recent().size(), Store::kMaxRecent);
    QCOMPARE(store.recent().front(), std::string("app15"));
    QCOMPARE(store.recent()[1], std::string("app19"));
    QCOMPARE(std::count(store.recent().begin(), store.recent().end(), "app15"), 1);
    QCOMPARE(store.recent().back(), std::string("app8"));
    QVERIFY(store.clearRecent());
    QVERIFY(!store.clearRecent());
}

void TestStore::jsonRoundTrip()
{
    Store store;
    store.togglePin("p.desktop");
    store.createCategory("Cat \\ \"q\"");
    store.toggleMember("m.desktop", "Cat \\ \"q\"");
    store.pushRecent("r.desktop");
    store.setPrefs(UserPrefs{ 2, false, false, true, true });
    const auto back = Store::fromJson(nlohmann::json::parse(store.toJson().dump()));
    QVERIFY(back.has_value());
    QVERIFY(*back == store);

    // Missing members take their defaults.
    const auto defaults = Store::fromJson(nlohmann::json{ { "version", 1 } });
    QVERIFY(defaults.has_value());
    QVERIFY(defaults->prefs() == UserPrefs{});
    QCOMPARE(defaults->prefs().menuDensity, 0);
    QVERIFY(defaults->prefs().animationFx && defaults->prefs().saveExpAppCats);
    QVERIFY(defaults->prefs().saveLastMenu && !defaults->prefs().oneExpAppCat);
}

void TestStore::rejectsWhatIsNotAStore()
{
    using nlohmann::json;
    for (const json& value :
         { json::array(),
           json{ { "pins", json::array() } },
           json{ { "version", 1 }, { "pins", 3 } },
           json{ { "version", 1 }, { "prefs", { { "MenuDensity", "1" } } } },
           json{ { "version", 1 },
                 { "categories", json::array({ { { "apps", json::array() } } }) } } })
        QVERIFY2(!Store::fromJson(value).has_value(), value.dump().c_str());
}

void TestStore::fileIsPrivateAndReloads()
{
    QTemporaryDir dir;
    StoreFile file(dir.path() + QStringLiteral("/pomvar/pomvarsrv.json"));
    QVERIFY(file.load() == Store{});
    Store store;
    store.togglePin("a.desktop");
    QVERIFY(file.save(store));
    struct stat status
    {};
    QCOMPARE(::stat(QFile::encodeName(file.path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, 0600u);
    store.togglePin("b.desktop");
    QVERIFY(file.save(store));
    QVERIFY(file.load() == store);
    // Nothing but the store itself is left in its folder.
    QCOMPARE(QDir(dir.path() + QStringLiteral("/pomvar")).entryList(QDir::Files),
             QStringList{ QStringLiteral("pomvarsrv.json") });
}

void TestStore::unreadableFileIsKeptAside()
{
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/pomvarsrv.json");
    for (const QByteArray& content :
         { QByteArray("{\"version\": 1, \"pins\": [tru"), QByteArray("[\"not a store\"]") }) {
        QFile raw(path);
        QVERIFY(raw.open(QIODevice::WriteOnly | QIODevice::Truncate));
        raw.write(content);
        raw.close();

        StoreFile file(path);
        QVERIFY(file.load() == Store{});
        QVERIFY(!file.setAsidePath().isEmpty());
        QVERIFY(!QFileInfo::exists(path));
        QFile aside(file.setAsidePath());
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), content);
        aside.close();
        QVERIFY(aside.remove());
    }
}

QTEST_APPLESS_MAIN(TestStore)
#include "tst_store.moc"
