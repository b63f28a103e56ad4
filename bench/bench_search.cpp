// Prints how long the search takes to rank 5,000 apps per keystroke (typing a few queries one
// letter at a time) and to prepare its index; then, with a runtime server run in-process over
// 5,000 desktop entries, with the calculator and a search provider answering at once on a private
// session bus, how long the window takes from the "app-search" request to shown and focused, and
// from a key press to the repainted results (names and expressions); last, the calculator's
// answer once its module is loaded. Run it under Xvfb for the window's figures
// (QT_QPA_PLATFORM=xcb).
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "Median.h"
#include "SessionBus.h"
#include "TestDesktop.h"
#include "WindowTiming.h"
#include "pomvarsrv/search/SearchIndex.h"
#include "pomvarsrv/search/SearchRow.h"
#include "pomvarsrv/ui/SearchResults.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListView>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace pomvar::srv;

using pomvar::bench::median;
using pomvar::bench::WindowTiming;

namespace {

std::vector<DesktopApp> generatedApps(int count)
{
    const char* words[] = { "Office",    "Writer",      "Image",   "Editor", "Music",
                            "Player",    "Terminal",    "Browser", "Mail",   "Calendar",
                            "Caf\u00e9", "Stra\u00dfe", "Viewer" };
    std::vector<DesktopApp> apps;
    for (int i = 0; i < count; ++i) {
        DesktopApp app;
        app.id = "org.example.App" + std::to_string(i) + ".desktop";
        app.name =
            std::string(words[i % 13]) + " " + words[(i / 13) % 13] + " " + std::to_string(i);
        app.untranslatedName = QString::fromStdString(app.name);
        app.genericName = QStringLiteral("Generic %1 Tool").arg(words[(i / 7) % 13]);
        app.keywords = { QStringLiteral("key%1").arg(i % 97), QStringLiteral("word") };
        app.comment =
            QStringLiteral("An application generated for the benchmark, number %1").arg(i);
        app.program = QStringLiteral("program-%1").arg(i);
        apps.push_back(std::move(app));
    }
    return apps;
}

// A search provider (org.gnome.Shell.SearchProvider2) that answers every question at once with
// two results.
class InstantProvider : public QDBusVirtualObject
{
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        QDBusMessage reply = message.createReply();
        if (message.member() == QLatin1String("GetInitialResultSet")) {
            reply << QStringList{ QStringLiteral("one"), QStringLiteral("two") };
        } else if (message.member() == QLatin1String("GetResultMetas")) {
            QDBusArgument metas;
            metas.beginArray(QMetaType::fromType<QVariantMap>());
            for (const QString& id : message.arguments().value(0).toStringList())
                metas << QVariantMap{ { QStringLiteral("id"), id },
                                      { QStringLiteral("name"), id } };
            metas.endArray();
            reply << QVariant::fromValue(metas);
        }
        return QDBusConnection(connection).send(reply);
    }
};

// Milliseconds from each question typed in the search window to the calculator's answer in its
// first row, the module loaded by the typing before.
void calculatorFigures(QLineEdit& field, const QAbstractItemModel& rows)
{
    const auto answer = [&](const QString& question) {
        field.clear();
        QCoreApplication::processEvents();
        QElapsedTimer clock;
        clock.start();
        field.setText(question);
        // Not QTest::qWaitFor, which sleeps 10 ms between its looks.
        const auto isAnswered = [&] {
            return rows.index(0, 0).data(SearchResults::KindRole).toInt() ==
                   int(SearchRow::Kind::calculation);
        };
        while (!isAnswered() && clock.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        const bool answered = isAnswered();
        if (!answered)
            std::fprintf(stderr,
                         "no answer to %s: first row %s\n",
                         qPrintable(question),
                         qPrintable(rows.index(0, 0).data().toString()));
        return answered ? clock.nsecsElapsed() / 1e6 : -1.0;
    };
    const double loadMs = answer(QStringLiteral("1+1"));
    std::vector<double> answerMs;
    for (int round = 0; round < 5; ++round)
        for (const QString& question : { QStringLiteral("2*(3+4)"),
                                         QStringLiteral("sqrt(16)+1"),
                                         QStringLiteral("2^10"),
                                         QStringLiteral("10 km to mi") })
            answerMs.push_back(answer(question));
    std::printf("calculator in the search window, loaded: first answer in %.1f ms; then "
                "question to answer in the first row median %.2f ms, worst %.2f ms (%zu "
                "questions)\n",
                loadMs,
                median(answerMs),
                *std::max_element(answerMs.begin(), answerMs.end()),
                answerMs.size());
}

void windowFigures(int argc, char* argv[])
{
    using pomvar::test::TestDesktop;
    TestDesktop desktop;
    pomvar::bench::populate(desktop, 5000, 400);
    TestDesktop::writeEntry(desktop.systemData(), "finder.desktop", "Name=Finder\nExec=true");
    TestDesktop::write(desktop.systemData() + "/gnome-shell/search-providers/finder.ini",
                       "[Shell Search Provider]\nDesktopId=finder.desktop\nBusName=org.pomvar."
                       "Bench.finder\nObjectPath=/org/pomvar/Bench/finder\nVersion=2\n");
    pomvar::bench::useInThisProcess(desktop);
    QApplication app(argc, argv);
    pomvar::test::SessionBus bus;
    if (!bus.start())
        return;
    bus.useInThisProcess();
    InstantProvider provider;
    QDBusConnection providers = QDBusConnection::connectToBus(bus.address(), "providers");
    if (!providers.registerService(QStringLiteral("org.pomvar.Bench.finder")) ||
        !providers.registerVirtualObject(QStringLiteral("/org/pomvar/Bench/finder"), &provider))
        return;
    pomvar::test::InProcessServer server;
    if (!server.start())
        return;
    std::vector<double> shownMs, repaintMs;
    for (int run = 0; run < 7; ++run) {
        const double ms = WindowTiming::openingMs(
            server.port(), pomvar::request::plain(pomvar::request::appSearch), "searchWindow");
        QWidget* window = WindowTiming::activeWindow("searchWindow");
        auto* field = window ? window->findChild<QLineEdit*>() : nullptr;
        if (ms < 0 || !field || !QTest::qWaitFor([&] { return field->hasFocus(); }))
            return;
        shownMs.push_back(ms);
        QWidget& list = *window->findChild<QListView*>()->viewport();
        for (const std::string typed : { "appli", "2^10+1" }) {
            field->clear();
            QTest::qWait(200); // the providers' late rows for the text before
            for (const char letter : typed) {
                const double key =
                    WindowTiming::repaintMs(list, [&] { QTest::keyClick(field, letter); });
                if (key >= 0)
                    repaintMs.push_back(key);
            }
        }
        if (run == 6)
            calculatorFigures(*field, *window->findChild<QListView*>()->model());
        window->close();
        QTest::qWait(50);
    }
    std::printf("search window over %zu apps, calculator and a provider on: app-search to shown "
                "and active median %.1f ms; key press to repainted results median %.1f ms, worst "
                "%.1f ms (%zu keys)\n",
                server.app().model().apps().size(),
                median(shownMs),
                median(repaintMs),
                *std::max_element(repaintMs.begin(), repaintMs.end()),
                repaintMs.size());
    std::fflush(stdout);
    if (WindowTiming::openingMs(
            server.port(), pomvar::request::plain(pomvar::request::appSearch), "searchWindow") < 0)
        return;
    QWidget* window = WindowTiming::activeWindow("searchWindow");
    calculatorFigures(*window->findChild<QLineEdit*>(), *window->findChild<QListView*>()->model());
}

} // namespace

int main(int argc, char* argv[])
{
    const std::vector<DesktopApp> apps = generatedApps(5000);
    SearchIndex index;
    QElapsedTimer clock;
    clock.start();
    index.setApps(apps);
    const double prepareMs = clock.nsecsElapsed() / 1e6;
    std::vector<double> perKey;
    std::size_t results = 0;
    for (int round = 0; round < 5; ++round) {
        for (const QString& query : { QStringLiteral("writer office"),
                                      QStringLiteral("strasse"),
                                      QStringLiteral("generic mail"),
                                      QStringLiteral("zqxv"),
                                      QStringLiteral("ow") }) {
            for (qsizetype typed = 1; typed <= query.size(); ++typed) {
                clock.restart();
                results = index.rank(query.left(typed), { { apps[7].id, 1.0 } }).size();
                perKey.push_back(clock.nsecsElapsed() / 1e6);
            }
        }
    }
    std::printf("search over %zu apps: index prepared in %.1f ms; ranking per keystroke: median "
                "%.3f ms, worst %.3f ms (%zu keystrokes; last query %zu results)\n",
                apps.size(),
                prepareMs,
                median(perKey),
                *std::max_element(perKey.begin(), perKey.end()),
                perKey.size(),
                results);
    std::fflush(stdout);
    windowFigures(argc, argv);
    return 0;
}
