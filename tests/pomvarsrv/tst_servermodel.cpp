// The server in-process: the store and its file, the payloads, the flags every change sets and
// a report clears, renames reported once, every change saved, which requests are answered, the
// new-category prompt and the port option. Parsing is tst_requestparser's.
#include "NewCategoryPrompt.h"
#include "RequestHandler.h"
#include "ServerModel.h"
#include "ServerOptions.h"
#include "SrvClient.h"
#include "StoreFile.h"
#include "TestDesktop.h"
#include "wire/RuntimeEndpoint.h"

#include <QApplication>
#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace pomvar;
using namespace pomvar::srv;
using Json = nlohmann::json;
using Flags = MenuDataStatus;

namespace {

// Quotes, a backslash, control characters and multi-byte UTF-8.
const std::string kOdd = "q\"b\\s/\n\t\x01\x1f \xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80";

InstalledApps threeApps()
{
    return InstalledApps({ { "a.desktop", "Alpha", "a", "/i/a24.png", "/i/a48.png" },
                           { "b.desktop", kOdd, "b", "/i/b24.png", "/i/b48.png" },
                           { "c.desktop", "Gamma", "c", "/i/c24.png", "/i/c48.png" } });
}

template <typename T>
T visible(const char* objectName)
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String(objectName) && widget->isVisible())
            return qobject_cast<T>(widget);
    }
    return nullptr;
}

} // namespace

class TestServerModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storeOperations();
    void storeFile();
    void payloadsLeaveOutAppsNotInstalled();
    void changesSetTheirFlagsAndAreSaved();
    void onlyAwaitedRequestsAreAnswered();
    void newCategoryPrompt();
    void portOption();
};

void TestServerModel::storeOperations()
{
    Store store;
    QVERIFY(store.togglePin("a") && store.togglePin("b") && !store.togglePin("a"));
    QVERIFY(store.togglePin("a") && store.isPinned("a") && !store.isPinned("x"));
    QCOMPARE(store.pins(), (std::vector<std::string>{ "b", "a" }));
    QVERIFY(!store.createCategory("") && store.createCategory("W") && !store.createCategory("W"));
    QVERIFY(store.createCategory("V"));
    QCOMPARE(store.toggleMember("x", "W"), std::optional(true));
    QCOMPARE(store.toggleMember("x", "W"), std::optional(false));
    QCOMPARE(store.toggleMember("x", "Nope"), std::optional<bool>());
    QVERIFY(store.addMember("y", "W") && !store.addMember("y", "W") && !store.addMember("y", "?"));
    QVERIFY(!store.renameCategory("W", "V") && !store.renameCategory("W", ""));
    QVERIFY(!store.renameCategory("?", "U") && store.renameCategory("W", "U"));
    QVERIFY(!store.category("W") && store.category("U")->apps == std::vector<std::string>{ "y" });
    QVERIFY(store.deleteCategory("V") && !store.deleteCategory("V"));
    QCOMPARE(store.categories().size(), std::size_t(1));

    for (int i = 0; i < 20; ++i)
        store.pushRecent("app" + std::to_string(i));
    store.pushRecent("app15");
    std::vector<std::string> recent = { "app15" };
    for (int i = 19; recent.size() < Store::kMaxRecent; --i)
        i != 15 ? recent.push_back("app" + std::to_string(i)) : void();
    QCOMPARE(store.recent(), recent);
    QVERIFY(store.clearRecent() && !store.clearRecent());
}

void TestServerModel::storeFile()
{
    QTemporaryDir dir;
    StoreFile file(dir.path() + QStringLiteral("/pomvar/pomvarsrv.json"));
    QVERIFY(file.load() == Store{});
    Store store;
    store.togglePin("p.desktop");
    store.createCategory(kOdd);
    store.toggleMember("m.desktop", kOdd);
    store.createCategory("Empty");
    store.pushRecent("r.desktop");
    store.setPrefs(UserPrefs{ 2, false, false, false, true });
    QVERIFY(file.save(store) && file.load() == store);
    // Private to its owner (the "user" bits repeat the owner's), and replaced whole.
    QCOMPARE(QFile::permissions(file.path()) & 0x7077, QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(QDir(dir.path() + QStringLiteral("/pomvar")).entryList(QDir::Files | QDir::Hidden),
             QStringList{ QStringLiteral("pomvarsrv.json") });
    // Missing members take their defaults.
    QVERIFY(Store::fromJson(Json{ { "version", 1 } })->prefs() == UserPrefs{});
    // Unreadable, or not a store: kept aside, and the defaults used.
    const char* damaged[] = {
        R"({"version": 1, "pins": [tru)",
        R"(["not a store"])",
        R"({"pins": []})",
        R"({"version": 1, "pins": 3})",
        R"({"version": 1, "prefs": {"MenuDensity": "1"}})",
        R"({"version": 1, "categories": [{"apps": []}]})",
        R"({"version": 1, "categories": [{"name": "A"}, {"name": "A"}]})",
    };
    for (const char* text : damaged) {
        QVERIFY(pomvar::test::TestDesktop::write(file.path(), text));
        QVERIFY2(file.load() == Store{} && !QFile::exists(file.path()), text);
        QCOMPARE(pomvar::test::TestDesktop::read(file.setAsidePath()), QByteArray(text));
        QVERIFY(QFile::remove(file.setAsidePath()));
    }
}

void TestServerModel::payloadsLeaveOutAppsNotInstalled()
{
    Store store;
    store.togglePin("b.desktop");
    store.togglePin("gone.desktop");
    store.createCategory(kOdd);
    for (const char* app : { "gone.desktop", "c.desktop", "b.desktop" })
        store.toggleMember(app, kOdd);
    store.pushRecent("a.desktop");
    store.pushRecent("gone.desktop");
    ServerModel model(nullptr, store);
    model.setApps(threeApps());
    const auto app = [](const std::string& k, const std::string& name, bool pinned) {
        return Json{ { "appkey", k + ".desktop" },
                     { "name", name },
                     { "bundleid", k },
                     { "iconpath", "/i/" + k + "24.png" },
                     { "pinned", pinned },
                     { "iconpath2x", "/i/" + k + "48.png" } };
    };
    const Json a = app("a", "Alpha", false), b = app("b", kOdd, true), c = app("c", "Gamma", false);
    JCOMPARE(Json::parse(model.allAppsPayload()), Json::array({ a, b, c }));
    JCOMPARE(Json::parse(model.recentAppsPayload()), Json::array({ a }));
    Json pinned = b;
    pinned.erase("pinned");
    JCOMPARE(Json::parse(model.takeMyAppsPayload()),
             (Json{ { "pinnedapps", Json::array({ pinned }) },
                    { "appcats", Json::array({ kOdd }) },
                    { "appcatapps", { { kOdd, Json::array({ c, b }) } } },
                    { "renamedAppcats", Json::array() } }));
    // The store keeps what is not installed, for when the app comes back.
    QVERIFY(model.store() == store);
}

void TestServerModel::changesSetTheirFlagsAndAreSaved()
{
    QTemporaryDir dir;
    StoreFile file(dir.path() + QStringLiteral("/store.json"));
    ServerModel model(&file);
    QVERIFY(!model.isReady());
    model.setApps(threeApps());
    QVERIFY(model.isReady() && model.takeFlags() == Flags{});
    model.allAppsPayload();
    // Each change succeeds (or is refused), changes the store or not, and sets these flags.
    const std::tuple<std::function<bool()>, bool, Flags> changes[] = {
        { [&] { return model.togglePin("a.desktop"); }, true, { .pinnedAppsModified = true } },
        { [&] { return !model.togglePin("gone.desktop"); }, false, {} },
        { [&] { return model.createCategoryWith("Old", "a.desktop"); },
          true,
          { .appcatsModified = true } },
        { [&] { return !model.createCategoryWith("Old", "b.desktop"); }, false, {} },
        { [&] { return model.toggleMember("a.desktop", "Old") == false; },
          true,
          { .appcatsModified = 1 } },
        { [&] { return !model.toggleMember("a.desktop", "None"); }, false, {} },
        { [&] { return model.noteLaunched("b.desktop"), true; },
          true,
          { .recentAppsModified = true } },
        { [&] { return model.setApps(threeApps()), model.clearRecent(), true; },
          true,
          { .appFolderModified = true, .recentAppsModified = true } },
        { [&] { return model.setPrefs(UserPrefs{ .menuDensity = 1 }), true; }, true, {} },
        { [&] { return model.renameCategory("Old", "Work"); }, true, { .appcatsModified = true } },
        { [&] { return !model.renameCategory("?", "X"); }, false, {} },
        // Icons rendered later replace the generic one, and the menus are to be fetched again.
        { [&] {
             return model.setIcons({ { "c.desktop", {}, {}, "/r/c24.png", "/r/c48.png" } }), true;
         },
          false,
          { .appFolderModified = true } },
        { [&] { return model.setIcons({}), true; }, false, {} },
        { [&] { return model.deleteCategory("Work") && !model.deleteCategory("Old"); },
          true,
          { .appcatsModified = true } },
    };
    for (const auto& [change, changesStore, flags] : changes) {
        const Store before = model.store();
        QVERIFY(change());
        QVERIFY(model.takeFlags() == flags);
        QCOMPARE(!(model.store() == before), changesStore);
        QVERIFY(file.load() == model.store());
    }
    JCOMPARE(Json::parse(model.allAppsPayload())[2]["iconpath2x"], "/r/c48.png");
    // Reported once; bytes that are not UTF-8 come out replaced, never as broken JSON.
    model.createCategoryWith("Tools", "c.desktop");
    model.takeMyAppsPayload();
    QVERIFY(model.renameCategory("Tools", "New \"one\" \xc0"));
    JCOMPARE(Json::parse(model.takeMyAppsPayload()), Json::parse(R"({"pinnedapps": [{"appkey":
        "a.desktop", "name": "Alpha", "bundleid": "a", "iconpath": "/i/a24.png", "iconpath2x":
        "/i/a48.png"}], "appcats": ["New \"one\" �"], "appcatapps": {"New \"one\" �": [{"appkey":
        "c.desktop", "name": "Gamma", "bundleid": "c", "iconpath": "/r/c24.png", "iconpath2x":
        "/r/c48.png", "pinned": false}]}, "renamedAppcats": [{"old": "Tools", "new": "New \"one\" �"}]})"));
    JCOMPARE(Json::parse(model.takeMyAppsPayload())["renamedAppcats"], Json::array());
}

void TestServerModel::onlyAwaitedRequestsAreAnswered()
{
    ServerModel model;
    model.setApps(threeApps());
    model.createCategoryWith("Tools", "c.desktop");
    model.takeFlags();
    RequestHandler handler(model);
    QSignalSpy launches(&handler, &RequestHandler::launchRequested);
    QSignalSpy prompts(&handler, &RequestHandler::newCategoryRequested);
    QSignalSpy quits(&handler, &RequestHandler::quitRequested);
    // "id|appkey|appcat"; the reply, or null for none.
    const auto reply = [&](const QString& text) {
        const QStringList parts = text.split(u'|');
        const auto r = handler.handle({ .id = parts[0].toStdString(),
                                        .appkey = parts.value(1).toStdString(),
                                        .appcat = parts.value(2).toStdString() });
        return Json::parse(r.value_or("null"));
    };
    JCOMPARE(reply("get-allapps-menu-data"), Json::parse(model.allAppsPayload()));
    JCOMPARE(reply("get-recentapps-menu-data"), Json::parse(model.recentAppsPayload()));
    JCOMPARE(reply("get-myapps-menu-data"), Json::parse(ServerModel(model).takeMyAppsPayload()));
    Json replies;
    const QString texts =
        "get-app-status get-user-prefs check-update-available get-app-update-status "
        "toggle-set-appcat|a.desktop|Tools toggle-set-appcat|a.desktop|None "
        "toggle-set-appcat|gone.desktop|Tools toggle-pin-app|b.desktop "
        "toggle-pin-app|gone.desktop get-menu-data-modified-status launch|a.desktop "
        "launch|gone.desktop create-new-appcat-cxtmnu|c.desktop "
        "create-new-appcat-cxtmnu|gone.desktop get-info-app|a.desktop get-info-appcat||Tools "
        "organizer check-updates app-search about make-coffee quit";
    for (const QString& text : texts.split(u' '))
        replies.push_back(reply(text));
    JCOMPARE(replies, Json::parse(R"([{"ready": true, "updateFinished": false},
        {"MenuDensity": 0, "AnimationFx": true, "SaveExpAppCats": true, "SaveLastMenu": true,
         "OneExpAppCat": false}, {"isUpdateAvailable": false}, {"status": "noUpdate"},
        {"isset": true}, {"isset": false}, {"isset": false}, null, null,
        {"appFolderModified": false, "recentAppsModified": false, "appcatsModified": true,
         "pinnedAppsModified": true}, null, null, null, null, null, null, null, null, null, null,
        null, null])"));
    QCOMPARE(launches.size(), 1);
    QCOMPARE(launches[0][0].toString(), QStringLiteral("a.desktop"));
    QCOMPARE(prompts.size(), 1);
    QCOMPARE(prompts[0][0].toString(), QStringLiteral("c.desktop"));
    QCOMPARE(quits.size(), 1);
    QCOMPARE(model.store().pins(), std::vector<std::string>{ "b.desktop" });
}

void TestServerModel::newCategoryPrompt()
{
    for (const auto& [name, created] : { std::pair(" Say \"hi\" \\o/ ", true),
                                         { "Taken", false },
                                         { "", false },
                                         { "   ", false } }) {
        ServerModel model;
        model.setApps(threeApps());
        model.createCategoryWith("Taken", "b.desktop");
        model.takeFlags();
        NewCategoryPrompt prompt(model);
        QSignalSpy answered(&prompt, &NewCategoryPrompt::answered);
        // Returns at once: the server goes on serving while the user types.
        prompt.ask(QStringLiteral("a.desktop"));
        auto* dialog = visible<QInputDialog*>("newCategoryPrompt");
        QVERIFY(dialog);
        dialog->setTextValue(QString::fromUtf8(name));
        dialog->accept();
        QCOMPARE(answered.size(), 1);
        QCOMPARE(answered[0][0].toBool(), created);
        QCOMPARE(model.takeFlags().appcatsModified, created);
        const auto& last = model.store().categories().back();
        QCOMPARE(model.store().categories().size(), std::size_t(created ? 2 : 1));
        QCOMPARE(last.name, created ? "Say \"hi\" \\o/" : "Taken");
        QCOMPARE(last.apps, (std::vector<std::string>{ created ? "a.desktop" : "b.desktop" }));
        // A refused name is told to the user.
        auto* notice = visible<QMessageBox*>("pomvarsrvNotice");
        QCOMPARE(notice != nullptr, !created);
        if (notice)
            notice->close();
    }
}

void TestServerModel::portOption()
{
    const int fixed = pomvar::wire::kRuntimePort;
    for (const auto& [value, port] : { std::pair("1", 1),
                                       { "65535", 65535 },
                                       { "0", fixed },
                                       { "65536", fixed },
                                       { "http", fixed },
                                       { "", fixed } }) {
        qputenv("POMVARSRV_PORT", value);
        QCOMPARE(int(ServerOptions::port()), port);
    }
    qunsetenv("POMVARSRV_PORT");
    QCOMPARE(int(ServerOptions::port()), fixed);
}

QTEST_MAIN(TestServerModel)
#include "tst_servermodel.moc"
