// Prints how long the search takes to rank 5,000 apps per keystroke (typing a few queries one
// letter at a time) and to prepare its index; then, with a runtime server run in-process over
// 5,000 desktop entries, how long the window takes from the "app-search" request to shown and
// focused, and from a key press to the repainted results. Run it under Xvfb for the window's
// figures (QT_QPA_PLATFORM=xcb).
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "SearchIndex.h"
#include "SrvClient.h"
#include "TestDesktop.h"
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

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

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

// Stops the clock at the next paint of the watched widget.
class PaintClock : public QObject
{
public:
    QElapsedTimer clock;
    double paintedMs = -1;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && paintedMs < 0)
            paintedMs = clock.nsecsElapsed() / 1e6;
        return QObject::eventFilter(watched, event);
    }
};

void windowFigures(int argc, char* argv[])
{
    using pomvar::test::TestDesktop;
    TestDesktop desktop;
    pomvar::bench::populate(desktop, 5000, 400);
    const QProcessEnvironment env = pomvar::bench::benchEnvironment(desktop, 0);
    for (const char* name :
         { "HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "PATH" })
        qputenv(name, env.value(name).toUtf8());
    QApplication app(argc, argv);
    pomvar::test::InProcessServer server;
    if (!server.start())
        return;
    const quint16 port = server.port();
    std::vector<double> shownMs, repaintMs;
    QLineEdit* field = nullptr;
    for (int run = 0; run < 7; ++run) {
        pomvar::test::SrvClient client;
        client.connectTo(port);
        QElapsedTimer clock;
        clock.start();
        client.send(pomvar::request::plain(pomvar::request::appSearch));
        const bool shown = QTest::qWaitFor(
            [&] {
                for (QWidget* window : QApplication::topLevelWidgets())
                    if (window->objectName() == "searchWindow" && window->isActiveWindow())
                        field = window->findChild<QLineEdit*>();
                return field && field->hasFocus();
            },
            5000);
        if (!shown)
            return;
        shownMs.push_back(clock.nsecsElapsed() / 1e6);
        auto* list = field->window()->findChild<QListView*>();
        for (const char letter : std::string("appli")) {
            PaintClock paint;
            list->viewport()->installEventFilter(&paint);
            paint.clock.start();
            QTest::keyClick(field, letter);
            if (QTest::qWaitFor([&] { return paint.paintedMs >= 0; }, 1000))
                repaintMs.push_back(paint.paintedMs);
            list->viewport()->removeEventFilter(&paint);
        }
        field->window()->close();
        field = nullptr;
        QTest::qWait(50);
    }
    std::printf("search window over %zu apps: app-search to shown and focused median %.1f ms; key "
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
