// Prints how long a character typed in the panel takes to reach the search window that opens in
// the panel's place: the real panel in this process, the real pomvarsrv as a child process
// (the panel's awaited requests block this thread), over 5,000 desktop entries. From the key
// press in the open panel to the search window holding the keyboard focus with the character
// handed over and the panel closed. Run it under Xvfb (QT_QPA_PLATFORM=xcb).
#include "GeneratedApps.h"
#include "Median.h"
#include "ServerProcess.h"
#include "TestDesktop.h"
#include "model/PomvarViewModel.h"
#include "ui/PanelWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using pomvar::bench::median;

namespace {

xcb_connection_t* x11Connection()
{
    auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// The X window that has the keyboard focus.
xcb_window_t inputFocus()
{
    xcb_connection_t* connection = x11Connection();
    if (!connection)
        return 0;
    xcb_get_input_focus_reply_t* reply =
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr);
    const xcb_window_t focus = reply ? reply->focus : 0;
    std::free(reply);
    return focus;
}

} // namespace

int main(int argc, char* argv[])
{
    pomvar::test::TestDesktop desktop;
    pomvar::bench::populate(desktop, 5000, 400);
    pomvar::bench::useInThisProcess(desktop);
    qputenv("POMVAR_LIBEXEC_DIR", POMVAR_BENCH_LIBEXEC_DIR);
    QApplication app(argc, argv);
    pomvar::test::ServerProcess server(desktop);
    if (!server.start()) {
        std::fprintf(stderr, "the server did not start\n");
        return 1;
    }
    pomvar::PomvarViewModel vm(pomvar::PomvarRT{ "localhost", server.port() });
    pomvar::PanelWindow panel(vm, [] {});
    std::vector<double> shownMs;
    for (int run = 0; run < 9; ++run) {
        // The search window of the run before, still open, loses the focus as to another app's.
        xcb_set_input_focus(x11Connection(),
                            XCB_INPUT_FOCUS_NONE,
                            xcb_setup_roots_iterator(xcb_get_setup(x11Connection())).data->root,
                            XCB_CURRENT_TIME);
        xcb_flush(x11Connection());
        panel.open({});
        if (!QTest::qWaitForWindowActive(&panel, 5000)) {
            std::fprintf(stderr, "the panel did not open\n");
            return 1;
        }
        QElapsedTimer clock;
        clock.start();
        QTest::keyClick(panel.windowHandle(), Qt::Key(Qt::Key_A + run), {});
        if (!QTest::qWaitFor(
                [&] {
                    const xcb_window_t focus = inputFocus();
                    return !panel.isVisible() && focus > 1 && focus != panel.winId();
                },
                5000)) {
            std::fprintf(stderr,
                         "the search window did not take the focus (%u, panel %d)\n",
                         inputFocus(),
                         int(panel.isVisible()));
            return 1;
        }
        shownMs.push_back(clock.nsecsElapsed() / 1e6);
    }
    std::printf("panel to search over 5000 apps: typed character to the search window focused "
                "with it, the panel closed: first %.1f ms; later median %.1f ms, worst %.1f ms "
                "(%zu runs)\n",
                shownMs.front(),
                median(std::vector<double>(shownMs.begin() + 1, shownMs.end())),
                *std::max_element(shownMs.begin(), shownMs.end()),
                shownMs.size());
    return 0;
}
