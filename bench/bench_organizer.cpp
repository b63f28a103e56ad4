// Prints how long the organizer takes from the "organizer" request to the window shown and
// active, with a runtime server run in-process over 5,000 desktop entries and a store of 20 pins
// and 12 categories of 40 apps: the first request (the window is made) and the following ones on
// each pane; then how long "Pin Apps…" takes to show its picker over All Apps, and a key typed in
// its filter to the repainted list. Run it under Xvfb (QT_QPA_PLATFORM=xcb). With --warm the
// search window is shown first, so that the first figure leaves out what Qt does once for a
// process's first window (fonts, style, the display's resources).
#include "GeneratedApps.h"
#include "InProcessServer.h"
#include "Median.h"
#include "TestDesktop.h"
#include "WindowTiming.h"
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
using bench::median;
using bench::WindowTiming;
using test::InProcessServer;

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
    bench::useInThisProcess(desktop);
    QApplication app(argc, argv);
    InProcessServer server;
    if (!server.start())
        return 1;
    const quint16 port = server.port();

    const bool warm = app.arguments().contains(QStringLiteral("--warm"));
    const auto openMs = [port](OrganizerDlgMode pane, std::string_view item) {
        return WindowTiming::openingMs(port, request::organizer(pane, item), "organizerWindow");
    };
    if (warm) {
        if (WindowTiming::openingMs(port, request::plain(request::appSearch), "searchWindow") < 0)
            return 1;
        WindowTiming::activeWindow("searchWindow")->close();
        QTest::qWait(100);
    }
    const double firstMs = openMs(OrganizerDlgMode::organize, "Category 3");
    std::vector<double> panes[3];
    for (int run = 0; run < 7; ++run) {
        for (int pane = 0; pane < 3; ++pane) {
            WindowTiming::activeWindow("organizerWindow")->close();
            QTest::qWait(50);
            const char* items[] = { "Category 5", "org.example.Bench42.desktop", "" };
            panes[pane].push_back(openMs(OrganizerDlgMode(pane), items[pane]));
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
    openMs(OrganizerDlgMode::organize, "");
    auto* pin = WindowTiming::activeWindow("organizerWindow")->findChild<QPushButton*>("pinApps");
    for (int run = 0; run < 7; ++run) {
        QElapsedTimer clock;
        clock.start();
        pin->click();
        QWidget* picker = WindowTiming::activeWindow("appPicker");
        if (!picker)
            return 1;
        pickerMs.push_back(clock.nsecsElapsed() / 1e6);
        QWidget& list = *picker->findChild<QListView*>()->viewport();
        for (const char letter : std::string("bench1")) {
            const double ms = WindowTiming::repaintMs(
                list, [&] { QTest::keyClick(picker->findChild<QLineEdit*>(), letter); });
            if (ms >= 0)
                keyMs.push_back(ms);
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
