// Prints how long the search takes to rank 5,000 apps per keystroke (typing a few queries one
// letter at a time) and to prepare its index; then, with a runtime server run in-process over
// 5,000 desktop entries, how long the window takes from the "app-search" request to shown and
// focused, and from a key press to the repainted results. Run it under Xvfb for the window's
// figures (QT_QPA_PLATFORM=xcb).
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "Median.h"
#include "TestDesktop.h"
#include "WindowTiming.h"
#include "pomvarsrv/search/SearchIndex.h"
#include "wire/Protocol.h"

#include <QApplication>
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

void windowFigures(int argc, char* argv[])
{
    using pomvar::test::TestDesktop;
    TestDesktop desktop;
    pomvar::bench::populate(desktop, 5000, 400);
    pomvar::bench::useInThisProcess(desktop);
    QApplication app(argc, argv);
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
        for (const char letter : std::string("appli")) {
            const double key =
                WindowTiming::repaintMs(list, [&] { QTest::keyClick(field, letter); });
            if (key >= 0)
                repaintMs.push_back(key);
        }
        window->close();
        QTest::qWait(50);
    }
    std::printf("search window over %zu apps: app-search to shown and active median %.1f ms; key "
                "press to repainted results median %.1f ms, worst %.1f ms (%zu keys)\n",
                server.app().model().apps().size(),
                median(shownMs),
                median(repaintMs),
                *std::max_element(repaintMs.begin(), repaintMs.end()),
                repaintMs.size());
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
