#include "FakeRuntimeServer.h"
#include "ipc/RequestText.h"
#include "model/PomvarViewModel.h"

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
        QCOMPARE(server.requestIds().front(), std::string("check-updates"));
        QTRY_VERIFY(!poll); // stopped and released
        QTest::qWait(1500);
        QCOMPARE(countOf(server, "get-app-update-status"), std::size_t{ 3 });
    }

    void noUpdateStopsAfterOneTick()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        server.clearRequests();
        vm.openOrganizer(OrganizerDlgMode::organize, "");
        QPointer<QTimer> poll = vm.appUpdateStatusTimer();
        QTRY_VERIFY_WITH_TIMEOUT(!poll, 5000);
        QTest::qWait(1200);
        QCOMPARE(countOf(server, "get-app-update-status"), std::size_t{ 1 });
    }

    void aSecondStartLeavesTwoPollsUntilEachSeesAFinalStatus()
    {
        FakeRuntimeServer server;
        QVERIFY(server.listen());
        server.setDefaultReply("get-app-update-status", status("checking"));
        PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
        vm.checkUpdates();
        QPointer<QTimer> first = vm.appUpdateStatusTimer();
        vm.checkUpdates();
        QPointer<QTimer> second = vm.appUpdateStatusTimer();
        QVERIFY(first && second && first != second);
        server.clearRequests();
        QTRY_VERIFY_WITH_TIMEOUT(countOf(server, "get-app-update-status") >= 2, 5000);
        QVERIFY(first->isActive() && second->isActive());
        // The next two answers are final: one per poll.
        server.queueReply("get-app-update-status", status("noUpdate"));
        server.queueReply("get-app-update-status", status("noUpdate"));
        QTRY_VERIFY_WITH_TIMEOUT(!first && !second, 5000);
    }
};

QTEST_GUILESS_MAIN(TestUpdatePoll)
#include "tst_updatepoll.moc"
