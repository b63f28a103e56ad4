// Prints how fast the panel is with 1,000 and 5,000 apps served by the in-process fake runtime
// server, on the Qt platform of the environment (offscreen, or xcb under Xvfb):
//  - from the tray activation to the panel's first painted frame, at the first opening after
//    start-up and at a later opening;
//  - the time per frame while scrolling All Apps from top to bottom, one wheel notch
//    (three single steps) per frame, each frame a synchronous repaint of the list.
// The panel opens on All Apps (saveLastMenu on, "LastMenu" = 2). Icons are real PNG files of
// the system theme, one copy per app in a temporary folder, read by the rows at each paint.
//
// Every run is a child process of its own, so that the first opening pays what a freshly
// started front end pays (fonts, style, glyph caches); the figures are medians over the runs.
//
// A frame counts as painted when the panel window's expose or update request, during which
// the All Apps list painted, has been handled: the whole window is then in the backing store
// and flushed to the platform.
#include "FakeMenus.h"
#include "FakeRuntimeServer.h"
#include "Median.h"
#include "ThemeIcons.h"
#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/MenuBarScene.h"
#include "ui/MenuListView.h"
#include "ui/PanelWindow.h"
#include "ui/PomvarView.h"
#include "ui/TrayIcon.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace pomvar;
using test::FakeMenus;
using test::FakeRuntimeServer;
using test::ThemeIcons;

using pomvar::bench::median;

namespace {

constexpr int kRuns = 5;
constexpr int kLaterOpenings = 7;

double percentile(std::vector<double> values, double p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, std::size_t(p * double(values.size())))];
}

void spin(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// Names that vary in length and letters, as real app names do.
std::string appName(int i)
{
    static const std::array<const char*, 16> first = {
        "Photo",  "Text",   "Sound", "Video", "Disk", "Net",   "Code",  "Map",
        "Report", "Screen", "Mail",  "Chess", "Note", "Print", "Cloud", "Font",
    };
    static const std::array<const char*, 12> second = {
        "Editor", "Viewer",  "Manager", "Studio", "Recorder", "Tracker",
        "Player", "Monitor", "Book",    "Writer", "Scanner",  "Reader",
    };
    return std::string(first[std::size_t(i) % first.size()]) + " " +
           second[std::size_t(i / 16) % second.size()] + " " + std::to_string(i + 1);
}

// Times the panel window's frames: armed before an activation, it records the time at which
// the first frame that painted the All Apps list had been handled.
class FrameProbe : public QObject
{
public:
    explicit FrameProbe(PanelWindow& panel)
        : m_panel(panel)
    {
        qApp->installEventFilter(this);
    }

    void arm()
    {
        m_frameMs = -1;
        m_timer.start();
    }
    double frameMs() const { return m_frameMs; }
    bool framed() const { return m_frameMs >= 0; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_listPainted && isAllAppsViewport(watched))
            m_listPainted = true;
        const bool frame =
            event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest;
        if (!frame || m_inside || watched != m_panel.windowHandle())
            return false;
        // Deliver the event here, then look at what it painted.
        m_inside = true;
        m_listPainted = false;
        watched->event(event);
        m_inside = false;
        if (m_listPainted && m_frameMs < 0 && m_timer.isValid())
            m_frameMs = double(m_timer.nsecsElapsed()) / 1e6;
        return true;
    }

private:
    bool isAllAppsViewport(QObject* watched) const
    {
        PomvarView* view = m_panel.view();
        return view && watched == view->menuView(Pomvar::AllApps)->viewport();
    }

    PanelWindow& m_panel;
    QElapsedTimer m_timer;
    double m_frameMs = -1;
    bool m_inside = false;
    bool m_listPainted = false;
};

// Activates the tray icon and waits for the panel's first frame; -1 when none came.
double openAndTime(MenuBarScene& scene, FrameProbe& probe)
{
    probe.arm();
    Q_EMIT scene.trayIcon()->icon()->activated(QSystemTrayIcon::Trigger);
    QElapsedTimer waited;
    waited.start();
    while (!probe.framed() && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return probe.framed() ? probe.frameMs() : -1;
}

// One run in this process: prints "RESULT first later scrollMedian scrollP95 scrollMax frames".
int child(int argc, char** argv, int count)
{
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    QApplication app(argc, argv);
    UserDefaults::setLastMenu(2);

    const std::vector<ThemeIcons::Icon> theme = ThemeIcons::all();
    if (theme.empty()) {
        std::fprintf(stderr, "bench_panel: no icon theme under /usr/share/icons/Adwaita\n");
        return 1;
    }
    QTemporaryDir iconDir;
    FakeRuntimeServer server;
    if (!server.listen())
        return 1;
    FakeMenus menus;
    for (int i = 0; i < count; ++i) {
        const ThemeIcons::Icon& icon = theme[std::size_t(i) % theme.size()];
        const QString path = iconDir.filePath(QStringLiteral("app%1.png").arg(i));
        const QString path2x = iconDir.filePath(QStringLiteral("app%1@2x.png").arg(i));
        QFile::copy(icon.path, path);
        QFile::copy(icon.path2x, path2x);
        menus.addApp({ "app" + std::to_string(i),
                       appName(i),
                       path.toStdString(),
                       path2x.toStdString(),
                       false });
    }
    for (int i = 0; i < 6; ++i)
        menus.pin("app" + std::to_string(i * 7));
    menus.addCategory("Work", { "app10", "app11", "app12", "app13" });
    menus.addCategory("Games", { "app20", "app21" });
    for (int i = 0; i < 10; ++i)
        menus.addRecent("app" + std::to_string(i * 3));
    menus.install(server);
    server.setDefaultReply("get-user-prefs",
                           FakeRuntimeServer::Reply::json(FakeMenus::prefs(0, true, false)));

    PomvarViewModel vm(PomvarRT{ "localhost", server.port() });
    MenuBarScene scene([&vm]() -> PomvarViewModel& { return vm; }, [] {});
    scene.show();
    FrameProbe probe(*scene.panel());
    spin(200);

    const double first = openAndTime(scene, probe);
    std::vector<double> later;
    for (int i = 0; i < kLaterOpenings; ++i) {
        spin(100);
        scene.panel()->dismiss();
        spin(100);
        later.push_back(openAndTime(scene, probe));
    }
    spin(100);

    // A repaint of a hidden list costs nothing: make sure the panel is still up (an opening
    // builds the content anew, so the list is looked up after it).
    if (!scene.panel()->isVisible()) {
        openAndTime(scene, probe);
        spin(100);
    }
    MenuListView* list = scene.panel()->view()->menuView(Pomvar::AllApps);
    QScrollBar* bar = list->verticalScrollBar();
    bar->setValue(0);
    list->viewport()->repaint();
    const int step = 3 * bar->singleStep();
    std::vector<double> frames;
    QElapsedTimer frame;
    while (bar->value() < bar->maximum()) {
        frame.start();
        bar->setValue(bar->value() + step);
        list->viewport()->repaint();
        frames.push_back(double(frame.nsecsElapsed()) / 1e6);
        QCoreApplication::processEvents();
        if (!list->isVisible()) {
            std::fprintf(stderr, "bench_panel: the panel closed while scrolling\n");
            return 1;
        }
    }
    scene.panel()->dismiss();
    std::printf("RESULT %.3f %.3f %.3f %.3f %.3f %zu\n",
                first,
                median(later),
                median(frames),
                percentile(frames, 0.95),
                frames.empty() ? 0.0 : *std::max_element(frames.begin(), frames.end()),
                frames.size());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--child") == 0)
        return child(argc, argv, std::atoi(argv[2]));

    const char* platform = std::getenv("QT_QPA_PLATFORM");
    std::printf("Panel timings on the \"%s\" platform, All Apps shown, median of %d runs "
                "(each run a fresh process):\n",
                platform ? platform : "default",
                kRuns);
    for (const int count : { 1000, 5000 }) {
        std::vector<double> first, later, scroll, scrollP95, scrollMax;
        std::size_t frames = 0;
        for (int run = 0; run < kRuns; ++run) {
            const std::string command =
                std::string("'") + argv[0] + "' --child " + std::to_string(count);
            FILE* pipe = popen(command.c_str(), "r");
            if (!pipe)
                return 1;
            // The front end prints lines of its own; the figures are on the "RESULT" line.
            std::array<double, 5> values{};
            int read = 0;
            std::array<char, 512> line{};
            while (std::fgets(line.data(), int(line.size()), pipe))
                if (std::strncmp(line.data(), "RESULT ", 7) == 0)
                    read = std::sscanf(line.data() + 7,
                                       "%lf %lf %lf %lf %lf %zu",
                                       &values[0],
                                       &values[1],
                                       &values[2],
                                       &values[3],
                                       &values[4],
                                       &frames);
            if (pclose(pipe) != 0 || read != 6 || values[0] < 0 || values[1] < 0) {
                std::fprintf(stderr, "bench_panel: run %d with %d apps failed\n", run, count);
                return 1;
            }
            first.push_back(values[0]);
            later.push_back(values[1]);
            scroll.push_back(values[2]);
            scrollP95.push_back(values[3]);
            scrollMax.push_back(values[4]);
        }
        const bool target = count == 5000;
        std::printf("%d apps:\n", count);
        std::printf("  first opening, activation to first frame: %7.1f ms%s\n",
                    median(first),
                    target ? "   (target: under 100 ms)" : "");
        std::printf("  later opening, activation to first frame: %7.1f ms%s\n",
                    median(later),
                    target ? "   (target: under 30 ms)" : "");
        std::printf("  scrolling All Apps, per frame (%zu frames): median %.2f ms, 95th "
                    "percentile %.2f ms, worst %.2f ms%s\n",
                    frames,
                    median(scroll),
                    median(scrollP95),
                    median(scrollMax),
                    target ? "   (target: under 5 ms)" : "");
    }
    return 0;
}
