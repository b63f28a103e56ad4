// The server in-process with its real socket: the new-category prompt does not block the
// server, a name holding quotes and a backslash is created, toggled through the pasted texts and
// deleted, refused names are told to the user, renames reach My Apps once.
#include "ServerApp.h"
#include "ServerProcess.h"
#include "SrvClient.h"
#include "TestDesktop.h"

#include <nlohmann/json.hpp>

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QTest>

#include <future>

using namespace pomvar::srvtest;
using namespace pomvar::srv;
using Json = nlohmann::json;

#define JCOMPARE(actual, expected) QVERIFY2((actual) == (expected), Json(actual).dump().c_str())

namespace {

const std::string kName = "Say \"hi\" \\o/";

template <typename T>
T topLevel(const char* objectName)
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String(objectName) && widget->isVisible())
            return qobject_cast<T>(widget);
    }
    return nullptr;
}

} // namespace

class TestNewCategory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void promptDoesNotBlockTheServer();
    void quotedNameToggledThroughPastedTexts();
    void refusedNamesAreTold_data();
    void refusedNamesAreTold();
    void renamesReachMyAppsOnce();
    void deletedCategoryLeavesMyApps();
    void cleanupTestCase();

private:
    // A blocking exchange run off the main thread while the server's event loop turns here.
    std::optional<Json> exchange(const std::string& text, bool awaitReply = true);
    void answerPrompt(const QString& name);

    TestDesktop m_desktop;
    std::unique_ptr<ServerApp> m_app;
    std::uint16_t m_port = 0;
    SrvClient m_client;
};

void TestNewCategory::initTestCase()
{
    QVERIFY(m_desktop.isValid());
    QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(), "a.desktop", "Name=A\nExec=true\n"));
    QVERIFY(TestDesktop::writeEntry(m_desktop.systemData(), "b.desktop", "Name=B\nExec=true\n"));
    const auto env = m_desktop.environment(0);
    for (const char* name : { "HOME",
                              "XDG_CONFIG_HOME",
                              "XDG_CACHE_HOME",
                              "XDG_DATA_HOME",
                              "XDG_DATA_DIRS",
                              "GSETTINGS_BACKEND" })
        qputenv(name, env.value(QLatin1String(name)).toLocal8Bit());

    m_app = std::make_unique<ServerApp>(ServerOptions{});
    m_port = ServerProcess::freePort();
    QCOMPARE(m_app->start(m_port), RuntimeServer::ListenResult::listening);
    auto connected = std::async(std::launch::async, [this] { return m_client.connectTo(m_port); });
    QTRY_VERIFY(connected.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QVERIFY(connected.get());
    QTRY_VERIFY(m_app->model().isReady());
    QVERIFY(exchange(SrvClient::plain("get-menu-data-modified-status")));
}

void TestNewCategory::cleanupTestCase()
{
    m_client.close();
    m_app.reset();
}

std::optional<Json> TestNewCategory::exchange(const std::string& text, bool awaitReply)
{
    auto future = std::async(std::launch::async, [this, text, awaitReply] {
        if (!m_client.send(text))
            return std::optional<std::string>();
        return awaitReply ? m_client.readReply() : std::optional<std::string>("{}");
    });
    while (future.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    const auto reply = future.get();
    if (!reply)
        return std::nullopt;
    return Json::parse(*reply, nullptr, false);
}

void TestNewCategory::answerPrompt(const QString& name)
{
    QInputDialog* prompt = nullptr;
    QTRY_VERIFY((prompt = topLevel<QInputDialog*>("newCategoryPrompt")) != nullptr);
    prompt->setTextValue(name);
    prompt->accept();
}

void TestNewCategory::promptDoesNotBlockTheServer()
{
    QVERIFY(exchange(SrvClient::withAppkey("create-new-appcat-cxtmnu", "a.desktop"), false));
    QTRY_VERIFY(topLevel<QInputDialog*>("newCategoryPrompt") != nullptr);
    // While the prompt is open, the same connection and a new one are both served.
    const auto status = exchange(SrvClient::plain("get-app-status"));
    QVERIFY(status);
    JCOMPARE((*status)["ready"], true);
    SrvClient other;
    auto otherReply = std::async(std::launch::async, [&] {
        return other.connectTo(m_port) && other.request(SrvClient::plain("get-user-prefs"));
    });
    QTRY_VERIFY(otherReply.wait_for(std::chrono::seconds(0)) == std::future_status::ready);
    QVERIFY(otherReply.get());
    QVERIFY(topLevel<QInputDialog*>("newCategoryPrompt") != nullptr);

    answerPrompt(QString::fromStdString(kName));
    QTRY_VERIFY(m_app->model().store().category(kName) != nullptr);
    const auto flags = exchange(SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["appcatsModified"], true);
    const auto mine = exchange(SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["appcats"], Json::array({ kName }));
    JCOMPARE((*mine)["appcatapps"][kName][0]["appkey"], "a.desktop");
}

void TestNewCategory::quotedNameToggledThroughPastedTexts()
{
    auto isSet = exchange(SrvClient::toggleSetAppcat("b.desktop", kName));
    JCOMPARE(*isSet, Json::parse(R"({"isset": true})"));
    isSet = exchange(SrvClient::toggleSetAppcat("a.desktop", kName));
    JCOMPARE(*isSet, Json::parse(R"({"isset": false})"));
    const auto mine = exchange(SrvClient::plain("get-myapps-menu-data"));
    QCOMPARE((*mine)["appcatapps"][kName].size(), std::size_t(1));
    JCOMPARE((*mine)["appcatapps"][kName][0]["appkey"], "b.desktop");
}

void TestNewCategory::refusedNamesAreTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("taken") << QString::fromStdString(kName);
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral("   ");
}

void TestNewCategory::refusedNamesAreTold()
{
    QFETCH(QString, name);
    exchange(SrvClient::plain("get-menu-data-modified-status"));
    QVERIFY(exchange(SrvClient::withAppkey("create-new-appcat-cxtmnu", "b.desktop"), false));
    answerPrompt(name);
    QMessageBox* notice = nullptr;
    QTRY_VERIFY((notice = topLevel<QMessageBox*>("pomvarsrvNotice")) != nullptr);
    QVERIFY(!notice->text().isEmpty());
    notice->accept();
    QCOMPARE(m_app->model().store().categories().size(), std::size_t(1));
    const auto flags = exchange(SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["appcatsModified"], false);
}

void TestNewCategory::renamesReachMyAppsOnce()
{
    const std::string renamed = "Renamed \"x\"";
    QVERIFY(m_app->model().renameCategory(kName, renamed));
    const auto flags = exchange(SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["appcatsModified"], true);
    auto mine = exchange(SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["renamedAppcats"], Json::array({ { { "old", kName }, { "new", renamed } } }));
    JCOMPARE((*mine)["appcats"], Json::array({ renamed }));
    mine = exchange(SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["renamedAppcats"], Json::array());
    QVERIFY(m_app->model().renameCategory(renamed, kName));
    exchange(SrvClient::plain("get-myapps-menu-data"));
}

void TestNewCategory::deletedCategoryLeavesMyApps()
{
    QVERIFY(m_app->model().deleteCategory(kName));
    const auto flags = exchange(SrvClient::plain("get-menu-data-modified-status"));
    JCOMPARE((*flags)["appcatsModified"], true);
    const auto mine = exchange(SrvClient::plain("get-myapps-menu-data"));
    JCOMPARE((*mine)["appcats"], Json::array());
    JCOMPARE((*mine)["appcatapps"], Json::object());
    const auto isSet = exchange(SrvClient::toggleSetAppcat("b.desktop", kName));
    JCOMPARE(*isSet, Json::parse(R"({"isset": false})"));
    // And it is gone from the file too.
    StoreFile file(m_desktop.storePath());
    QVERIFY(file.load().categories().empty());
}

QTEST_MAIN(TestNewCategory)
#include "tst_newcategory.moc"
