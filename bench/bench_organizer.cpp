// Prints how long the organizer takes from the "organizer" request to the window shown and
// active, with a runtime server run in-process over 5,000 desktop entries and a store of 20 pins
// and 12 categories of 40 apps: the first request (the window is made) and the following ones on
// each pane; then how long "Pin Apps…" takes to show its picker over All Apps, and a key typed in
// its filter to the repainted list. Run it under Xvfb (QT_QPA_PLATFORM=xcb). With --warm the
// search window is shown first, so that the first figure leaves out what Qt does once for a
// process's first window (fonts, style, the display's resources).
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "SrvClient.h"
#include "TestDesktop.h"
#include "wire/Protocol.h"

#include <nlohmann/json.hpp>

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace pomvar;
using test::InProcessServer;

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
}

QWidget* activeWindow(const char* objectName)
{
    QWidget* window = QApplication::activeWindow();
    return window && window->objectName() == QLatin1String(objectName) ? window : nullptr;
}

// Milliseconds from sending the request to the organizer shown and active; -1 on a time-out.
double openMs(quint16 port, OrganizerDlgMode pane, std::string_view item)
{
    test::SrvClient client;
    client.connectTo(port);
    QElapsedTimer clock;
    clock.start();
    client.send(request::organizer(pane, item));
    if (!QTest::qWaitFor([] { return activeWindow("organizerWindow") != nullptr; }, 5000))
        return -1;
    return clock.nsecsElapsed() / 1e6;
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

} // namespace

int main(int argc, char* argv[])
{
    test::TestDesktop desktop;
    bench::populate(desktop, 5000, 400);
    nlohmann::json store = { { "version", 1 } };
    const auto key = [](int i) { return "org.example.Bench" + std::to_string(i) + ".desktop"; };
    for (int i = 0; i < 20; ++i)
        store["pins"].push_back(key(i * 7));
    for (int c = 0; c < 12; ++c) {
        nlohmann::json apps = nlohmann::json::array();
        for (int i = 0; i < 40; ++i)
            apps.push_back(key(c * 40 + i));
        store["categories"].push_back(
            { { "name", "Category " + std::to_string(c) }, { "apps", apps } });
    }
    test::TestDesktop::write(desktop.storePath(), QByteArray::fromStdString(store.dump()));
    const QProcessEnvironment env = bench::benchEnvironment(desktop, 0);
    for (const char* name :
         { "HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "PATH" })
        qputenv(name, env.value(name).toUtf8());
    QApplication app(argc, argv);
    InProcessServer server;
    if (!server.start())
        return 1;
    const quint16 port = server.port();

    const bool warm = app.arguments().contains(QStringLiteral("--warm"));
    if (warm) {
        test::SrvClient client;
        client.connectTo(port);
        client.send(request::plain(request::appSearch));
        if (!QTest::qWaitFor([] { return activeWindow("searchWindow") != nullptr; }, 5000))
            return 1;
        activeWindow("searchWindow")->close();
        QTest::qWait(100);
    }
    const double firstMs = openMs(port, OrganizerDlgMode::organize, "Category 3");
    std::vector<double> panes[3];
    for (int run = 0; run < 7; ++run) {
        for (int pane = 0; pane < 3; ++pane) {
            activeWindow("organizerWindow")->close();
            QTest::qWait(50);
            const char* items[] = { "Category 5", "org.example.Bench42.desktop", "" };
            panes[pane].push_back(openMs(port, OrganizerDlgMode(pane), items[pane]));
        }
    }
    std::printf(
        "organizer over %zu apps (20 pins, 12 categories of 40): \"organizer\" to the window "
        "shown and active: first %.1f ms (made%s); then median Organize %.1f ms, Organize "
        "App %.1f ms, Settings %.1f ms (7 runs each)\n",
        server.app().model().apps().size(),
        firstMs,
        warm ? ", after another window" : ", the process's first window",
        median(panes[0]),
        median(panes[1]),
        median(panes[2]));

    std::vector<double> pickerMs, keyMs;
    std::fflush(stdout);
    openMs(port, OrganizerDlgMode::organize, "");
    auto* pin = activeWindow("organizerWindow")->findChild<QPushButton*>("pinApps");
    for (int run = 0; run < 7; ++run) {
        QElapsedTimer clock;
        clock.start();
        pin->click();
        if (!QTest::qWaitFor([] { return activeWindow("appPicker") != nullptr; }, 5000))
            return 1;
        pickerMs.push_back(clock.nsecsElapsed() / 1e6);
        QWidget* picker = activeWindow("appPicker");
        auto* list = picker->findChild<QListView*>();
        for (const char letter : std::string("bench1")) {
            PaintClock paint;
            list->viewport()->installEventFilter(&paint);
            paint.clock.start();
            QTest::keyClick(picker->findChild<QLineEdit*>(), letter);
            if (QTest::qWaitFor([&] { return paint.paintedMs >= 0; }, 1000))
                keyMs.push_back(paint.paintedMs);
            list->viewport()->removeEventFilter(&paint);
        }
        picker->close();
        QTest::qWait(50);
    }
    std::printf("picker over All Apps: \"Pin Apps...\" to shown and active median %.1f ms; key "
                "typed in its filter to the repainted list median %.1f ms, worst %.1f ms (%zu "
                "keys)\n",
                median(pickerMs),
                median(keyMs),
                keyMs.empty() ? -1 : *std::max_element(keyMs.begin(), keyMs.end()),
                keyMs.size());
    return 0;
}
