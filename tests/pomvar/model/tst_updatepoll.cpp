#include "FakeRuntimeServer.h"
#include "model/PomvarViewModel.h"
#include "wire/Protocol.h"

#include <QSignalSpy>
#include <QTest>

using namespace pomvar;
using test::FakeRuntimeServer;
using Reply = FakeRuntimeServer::Reply;

namespace {

Reply status(const char* text)
{
    return Reply::json({ { "status", text } });
}

std::size_t countOf(const FakeRuntimeServer& server, const std::string& id)
{
    const auto ids = server.requestIds();
    return static_cast<std::size_t>(std::count(ids.begin(), ids.end(), id));
}

} // namespace

class TestUpdatePoll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readyToInstallTerminatesOnTheThirdTick()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.queueReply("get-app-update-status", status("downloading"));
        server.queueReply("get-app-update-status", status("NoUpdate")); // case matters
        server.queueReply("get-app-update-status", status("readyToInstall"));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        int terminations = 0;
        vm.setTerminateApplication([&] { ++terminations; });
        server.clearRequests();
        vm.checkUpdates();
        QPointer<QTimer> poll = vm.appUpdateStatusTimer();
        QTRY_COMPARE_WITH_TIMEOUT(terminations, 1, 10000);
        QCOMPARE(countOf(server, "get-app-update-status"), std::size_t{ 3 });
        QTRY_VERIFY(!poll); // stopped and released
    }

    void everyStartPollsAfreshUntilEachPollSeesAFinalStatus()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.setDefaultReply("get-app-update-status", status("checking"));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        QVERIFY(!vm.appUpdateStatusTimer());
        vm.openOrganizer(OrganizerDlgMode::organizeApp, "a");
        QPointer<QTimer> first = vm.appUpdateStatusTimer();
        QVERIFY(first && first->isActive());
        QCOMPARE(first->interval(), 1000);
        vm.checkUpdates();
        QPointer<QTimer> second = vm.appUpdateStatusTimer();
        QVERIFY(second && second != first);
        vm.settings();
        QVERIFY(server.waitForRequests(3));
        QCOMPARE(server.requests()[0], request::organizer(OrganizerDlgMode::organizeApp, "a"));
        QCOMPARE(server.requests()[1], request::plain(request::checkUpdates));
        QCOMPARE(server.requests()[2], request::organizer(OrganizerDlgMode::settings, ""));
        // The first poll is replaced, not stopped: both ask until each sees a final answer.
        QTRY_VERIFY_WITH_TIMEOUT(countOf(server, "get-app-update-status") >= 3, 5000);
        QVERIFY(first->isActive() && second->isActive());
        for (int poll = 0; poll < 3; ++poll)
            server.queueReply("get-app-update-status", status("noUpdate"));
        QTRY_VERIFY_WITH_TIMEOUT(!first && !second, 5000);
    }
};

QTEST_GUILESS_MAIN(TestUpdatePoll)
#include "tst_updatepoll.moc"
