// Prints how long Pomvar takes from exec until its tray icon is embedded, with the real runtime
// server and 1,000 or 5,000 generated apps, warm (medians of several runs), with the share of
// the lsof start-up probes, beside the time a bare Qt window takes to be mapped in the same
// session, and rofi's exec to its window over the same entries; then how soon the server answers
// the first "get-allapps-menu-data" after a connection, the peak RSS of both programs once the
// panel was opened, and the server's once it has checked its cached catalogue in the background,
// found unchanged or with an app renamed. Runs its own Xvfb and tray host (trayer); uses port
// 50818: run it alone.
#include "GeneratedApps.h"
#include "Median.h"
#include "SrvClient.h"
#include "TestDesktop.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

using pomvar::test::SrvClient;
using pomvar::test::TestDesktop;

using pomvar::bench::median;

namespace {

constexpr int kRuns = 7;

// Finds the viewable windows of a process by their _NET_WM_PID.
class WindowProbe
{
public:
    WindowProbe()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        const char name[] = "_NET_WM_PID";
        auto* reply = xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, sizeof name - 1, name), nullptr);
        m_pidAtom = reply ? reply->atom : XCB_NONE;
        free(reply);
    }
    ~WindowProbe() { xcb_disconnect(m_connection); }

    struct Found
    {
        xcb_window_t window;
        int x, y, width, height;
    };
    // The first viewable window of `pid` whose width passes `fits`.
    std::optional<Found> find(qint64 pid, const std::function<bool(int)>& fits)
    {
        return search(m_root, pid, fits);
    }

private:
    std::optional<Found> search(xcb_window_t parent,
                                qint64 pid,
                                const std::function<bool(int)>& fits)
    {
        auto* tree =
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr);
        if (!tree)
            return std::nullopt;
        std::optional<Found> found;
        const xcb_window_t* children = xcb_query_tree_children(tree);
        for (int i = 0; !found && i < xcb_query_tree_children_length(tree); ++i) {
            found = match(children[i], pid, fits);
            if (!found)
                found = search(children[i], pid, fits);
        }
        free(tree);
        return found;
    }

    std::optional<Found> match(xcb_window_t window,
                               qint64 pid,
                               const std::function<bool(int)>& fits)
    {
        auto* property = xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, window, m_pidAtom, XCB_ATOM_CARDINAL, 0, 1),
            nullptr);
        const bool ours = property && xcb_get_property_value_length(property) == 4 &&
                          *static_cast<quint32*>(xcb_get_property_value(property)) == pid;
        free(property);
        if (!ours)
            return std::nullopt;
        auto* attributes = xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, window), nullptr);
        const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        free(attributes);
        auto* geometry =
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr);
        auto* origin = xcb_translate_coordinates_reply(
            m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0), nullptr);
        std::optional<Found> found;
        if (viewable && geometry && origin && fits(geometry->width))
            found =
                Found{ window, origin->dst_x, origin->dst_y, geometry->width, geometry->height };
        free(geometry);
        free(origin);
        return found;
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root = 0;
    xcb_atom_t m_pidAtom = XCB_NONE;
};

// Polls every half millisecond until `found` holds or ten seconds passed: the elapsed ms.
std::optional<double> timeUntil(const QElapsedTimer& clock, const std::function<bool()>& found)
{
    while (clock.elapsed() < 10000) {
        if (found())
            return clock.nsecsElapsed() / 1e6;
        QThread::usleep(500);
    }
    return std::nullopt;
}

// A line of /proc/<pid>/status in KiB: "VmHWM" (peak) or "VmRSS" (now).
qint64 statusKiB(qint64 pid, const QByteArray& field)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(QByteArray(field).append(':')))
            return line.mid(field.size() + 1).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

// The process running `program` (the server is started detached, so not our child).
qint64 pidRunning(const QString& program)
{
    for (const QString& pid : QDir("/proc").entryList({ "[0-9]*" }, QDir::Dirs))
        if (QFileInfo("/proc/" + pid + "/exe").symLinkTarget() == program)
            return pid.toLongLong();
    return 0;
}

// A copy of the install layout and a desktop with `apps` generated entries.
struct Layout
{
    explicit Layout(int apps)
    {
        pomvar::bench::populate(desktop, apps, 400);
        QDir(desktop.root()).mkpath("bin");
        QDir(desktop.root()).mkpath("libexec/pomvar");
        pomvar = desktop.root() + "/bin/pomvar";
        server = desktop.root() + "/libexec/pomvar/pomvarsrv";
        QFile::copy(POMVAR_BENCH_FRONT_END, pomvar);
        QFile::copy(POMVAR_BENCH_SERVER, server);
        env = pomvar::bench::benchEnvironment(desktop, 0);
        env.remove("POMVARSRV_PORT"); // the fixed port, as installed
        env.insert("QT_QPA_PLATFORM", "xcb");
        // A timing stand-in for lsof first on the PATH: the start-up probes' share is reported.
        QDir(desktop.root()).mkpath("probe");
        QFile::copy(POMVAR_BENCH_LSOF_TIMER, desktop.root() + "/probe/lsof");
        env.insert("PATH", desktop.root() + "/probe:" + env.value("PATH"));
        env.insert("POMVAR_BENCH_PROBE_LOG", probeLog());
    }
    QString probeLog() const { return desktop.root() + "/probes.log"; }
    // The time spent in lsof probes since the log was last read, and how many ran.
    std::pair<double, int> takeProbes() const
    {
        double ms = 0;
        int count = 0;
        for (const QByteArray& line : TestDesktop::read(probeLog()).split('\n')) {
            const QList<QByteArray> fields = line.split(' ');
            if (fields.size() == 3) {
                ms += (fields[1].toLongLong() - fields[0].toLongLong()) / 1e6;
                ++count;
            }
        }
        QFile::remove(probeLog());
        return { ms, count };
    }

    TestDesktop desktop;
    QString pomvar, server;
    QProcessEnvironment env;
};

struct TrayRun
{
    std::optional<double> embeddedMs;
    double probesMs = 0;
    int probes = 0;
    qint64 frontEndKiB = 0, serverKiB = 0, serverCheckedKiB = 0, serverNowKiB = 0;
    // The server logged the end of its catalogue's background check, finding it unchanged.
    bool checked = false, unchanged = false;
};

// One start of pomvar until its icon is embedded; with `measureMemory`, the panel is then opened
// and the peak RSS of both programs read.
TrayRun trayRun(WindowProbe& display, const Layout& layout, bool measureMemory)
{
    TrayRun run;
    QProcess pomvar;
    pomvar.setProcessEnvironment(layout.env);
    pomvar.setStandardOutputFile(QProcess::nullDevice());
    // The server, started by the front end, writes its log there too.
    const QString log = layout.desktop.root() + "/pomvar.log";
    pomvar.setStandardErrorFile(log, QIODevice::Append);
    const qsizetype logged = TestDesktop::read(log).size();
    QElapsedTimer clock;
    clock.start();
    pomvar.start(layout.pomvar, {});
    std::optional<WindowProbe::Found> icon;
    run.embeddedMs = timeUntil(clock, [&] {
        icon = display.find(pomvar.processId(), [](int width) { return width <= 64; });
        return icon.has_value();
    });
    const qint64 server = pidRunning(layout.server);
    std::tie(run.probesMs, run.probes) = layout.takeProbes();
    if (measureMemory && icon) {
        QProcess::execute("xdotool",
                          { "mousemove",
                            QString::number(icon->x + icon->width / 2),
                            QString::number(icon->y + icon->height / 2),
                            "click",
                            "1" });
        QElapsedTimer panelClock;
        panelClock.start();
        timeUntil(panelClock, [&] {
            return display.find(pomvar.processId(), [](int width) { return width == 360; })
                .has_value();
        });
        QThread::msleep(300); // the rows are painted
        run.frontEndKiB = statusKiB(pomvar.processId(), "VmHWM");
        run.serverKiB = statusKiB(server, "VmHWM");
        // The background check of a cached start logs its listing once it has compared it;
        // a change found is then applied, and the front end fetches the menus again meanwhile.
        QElapsedTimer checkClock;
        checkClock.start();
        while (!(run.checked = TestDesktop::read(log).mid(logged).contains("apps listed in")) &&
               checkClock.elapsed() < 30000)
            QThread::msleep(20);
        QThread::msleep(1500);
        run.unchanged = TestDesktop::read(log).mid(logged).contains("; unchanged");
        run.serverCheckedKiB = statusKiB(server, "VmHWM");
        run.serverNowKiB = statusKiB(server, "VmRSS");
    }
    ::kill(static_cast<pid_t>(pomvar.processId()), SIGTERM);
    pomvar.waitForFinished(10000);
    if (server > 0) {
        ::kill(static_cast<pid_t>(server), SIGTERM);
        while (QFileInfo::exists(QStringLiteral("/proc/%1").arg(server)))
            QThread::msleep(5);
    }
    return run;
}

// rofi, the launcher Pomvar is compared with, over the same desktop entries: exec until its
// window is mapped, taken the same way as the tray icon.
std::optional<double> rofiWindowMs(WindowProbe& display, const Layout& layout)
{
    QProcess rofi;
    rofi.setProcessEnvironment(layout.env);
    rofi.setStandardOutputFile(QProcess::nullDevice());
    rofi.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    rofi.start("rofi", { "-show", "drun", "-no-config" });
    const auto mapped = timeUntil(clock, [&] {
        return display.find(rofi.processId(), [](int) { return true; }).has_value();
    });
    rofi.kill();
    rofi.waitForFinished();
    return mapped;
}

std::optional<double> bareWindowMs(WindowProbe& display, const QString& self)
{
    QProcess bare;
    QElapsedTimer clock;
    clock.start();
    bare.start(self, { "--bare-window" });
    const auto mapped = timeUntil(clock, [&] {
        return display.find(bare.processId(), [](int) { return true; }).has_value();
    });
    bare.kill();
    bare.waitForFinished();
    return mapped;
}

// The server on its own, on the fixed port as the front end would start it.
void startServer(QProcess& server, const Layout& layout, const QString& log)
{
    QProcessEnvironment env = layout.env;
    env.insert("POMVARSRV_PORT", "50818");
    server.setProcessEnvironment(env);
    server.setStandardErrorFile(log);
    server.start(layout.server, {});
}

struct FirstReply
{
    std::optional<double> duringStartMs; // connected as soon as the port accepts
    std::optional<double> whenUpMs;      // connected once the server says it is serving
};

// Starts the server on its own and times the first "get-allapps-menu-data" reply from the
// moment a connection is made: once as soon as the port accepts (the sockets are opened before
// Qt starts, so this includes Qt's start-up), once when the server has logged that it serves.
FirstReply firstAllApps(const Layout& layout)
{
    FirstReply figures;
    for (const bool early : { true, false }) {
        const QString log = layout.desktop.root() + "/first-reply.log";
        QFile::remove(log);
        QProcess server;
        startServer(server, layout, log);
        QElapsedTimer clock;
        clock.start();
        while (!early && !TestDesktop::read(log).contains("apps loaded in") &&
               clock.elapsed() < 10000)
            QThread::usleep(200);
        SrvClient client;
        while (!client.connectTo(50818) && clock.elapsed() < 10000)
            QThread::usleep(200);
        clock.restart();
        const auto reply = client.request(R"({"id": "get-allapps-menu-data"})");
        const double ms = clock.nsecsElapsed() / 1e6;
        (early ? figures.duringStartMs : figures.whenUpMs) =
            reply ? std::optional(ms) : std::nullopt;
        client.send(R"({"id": "quit"})");
        server.waitForFinished(10000);
    }
    return figures;
}

// A first start of the server alone, left running until its icons are rendered, then a second
// start until it has checked its cached catalogue: what a user's earlier sessions leave behind.
// (The first start's rescans, after it writes its store, can leave stand-in icons in the cache
// for the check to replace.)
void warmUp(const Layout& layout)
{
    for (const char* done : { "icons rendered", "apps listed in" }) {
        const QString log = layout.desktop.root() + "/warm-up.log";
        QProcess server;
        startServer(server, layout, log);
        QElapsedTimer clock;
        clock.start();
        while (!TestDesktop::read(log).contains(done) && clock.elapsed() < 120000)
            QThread::msleep(50);
        SrvClient client;
        if (client.connectTo(50818))
            client.send(R"({"id": "quit"})");
        server.waitForFinished(10000);
    }
}

struct Session
{
    std::unique_ptr<QProcess> xvfb, tray;
};

bool startSession(Session& session)
{
    session.xvfb = std::make_unique<QProcess>();
    session.xvfb->start("Xvfb",
                        { "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp" });
    if (!session.xvfb->waitForReadyRead(10000))
        return false;
    qputenv("DISPLAY", ":" + session.xvfb->readLine().trimmed());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // no StatusNotifierItem host: XEmbed, as trayer speaks
    session.tray = std::make_unique<QProcess>();
    session.tray->start("trayer",
                        { "--edge",
                          "top",
                          "--align",
                          "right",
                          "--widthtype",
                          "request",
                          "--height",
                          "28",
                          "--SetDockType",
                          "true",
                          "--transparent",
                          "false" });
    // Running a second later: it owns the tray selection by then.
    return session.tray->waitForStarted(10000) && !session.tray->waitForFinished(1000);
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc > 1 && QByteArray(argv[1]) == "--bare-window") {
        QApplication app(argc, argv);
        QWidget window;
        window.resize(200, 100);
        window.show();
        return app.exec();
    }
    Session session;
    if (!startSession(session)) {
        std::fprintf(stderr, "bench_trayup: Xvfb or trayer did not start\n");
        return 1;
    }
    WindowProbe display;
    std::printf("exec -> tray icon embedded, warm (medians of %d runs after a warm-up run)\n",
                kRuns);
    for (const int apps : { 1000, 5000 }) {
        Layout layout(apps);
        warmUp(layout);
        std::vector<double> tray, bare, rofi, probesMs, probes;
        for (int run = 0; run < kRuns; ++run) {
            if (const auto ms = rofiWindowMs(display, layout))
                rofi.push_back(*ms);
            const TrayRun started = trayRun(display, layout, false);
            if (started.embeddedMs)
                tray.push_back(*started.embeddedMs);
            probesMs.push_back(started.probesMs);
            probes.push_back(started.probes);
            if (const auto ms = bareWindowMs(display, QString::fromLocal8Bit(argv[0])))
                bare.push_back(*ms);
        }
        std::vector<double> firstDuringStart, firstWhenUp;
        for (int run = 0; run < kRuns; ++run) {
            const FirstReply first = firstAllApps(layout);
            if (first.duringStartMs)
                firstDuringStart.push_back(*first.duringStartMs);
            if (first.whenUpMs)
                firstWhenUp.push_back(*first.whenUpMs);
        }
        const TrayRun memory = trayRun(display, layout, true);
        // An app renamed while no server ran: the check finds it and lists the apps again.
        TestDesktop::writeEntry(layout.desktop.systemData(),
                                "org.example.Bench0.desktop",
                                "Name=Bench Application Renamed\nExec=true %U\nIcon=bench-0\n");
        const TrayRun changed = trayRun(display, layout, true);
        std::printf(
            "%5d apps: tray icon %6.1f ms (%zu runs; of which %.1f ms in %.0f lsof "
            "probes), bare Qt window mapped %6.1f ms\n"
            "            rofi -show drun, exec -> window mapped: %6.1f ms (%zu runs); Pomvar's "
            "tray icon takes %.0f %% of it (target: at most 50 %%)\n"
            "            first get-allapps-menu-data after connecting: %5.1f ms once the "
            "server serves, %5.1f ms when connected during its start-up\n"
            "            peak RSS after opening the panel: pomvar %5.1f MiB, pomvarsrv %5.1f MiB\n"
            "            pomvarsrv peak RSS with the background check of its cached catalogue: "
            "%5.1f MiB%s (%5.1f MiB resident after); %5.1f MiB%s when it finds an app changed\n",
            apps,
            median(tray),
            tray.size(),
            median(probesMs),
            median(probes),
            median(bare),
            median(rofi),
            rofi.size(),
            100 * median(tray) / median(rofi),
            median(firstWhenUp),
            median(firstDuringStart),
            memory.frontEndKiB / 1024.0,
            memory.serverKiB / 1024.0,
            memory.serverCheckedKiB / 1024.0,
            !memory.checked    ? " [check not seen]"
            : memory.unchanged ? ""
                               : " [a change found]",
            memory.serverNowKiB / 1024.0,
            changed.serverCheckedKiB / 1024.0,
            !changed.checked    ? " [check not seen]"
            : changed.unchanged ? " [none found]"
                                : "");
        std::fflush(stdout);
    }
    return 0;
}
