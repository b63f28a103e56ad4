#include "HeadlessWeston.h"

#include "ChildProcess.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <sys/stat.h>

namespace pomvar::test {

namespace {

// Where X servers put their sockets; weston gives up on XWayland when the folder is missing, as
// on a machine where no X server ran yet.
const QString kXSocketDir = QStringLiteral("/tmp/.X11-unix");

// Whether a client can connect to the Unix socket at `path` now.
bool accepts(const QString& path)
{
    QLocalSocket socket;
    socket.connectToServer(path);
    return socket.waitForConnected(1000);
}

} // namespace

QString HeadlessWeston::missingPackage(bool xwayland)
{
    if (QStandardPaths::findExecutable("weston").isEmpty() ||
        QStandardPaths::findExecutable("weston-debug").isEmpty())
        return QStringLiteral("weston");
    if (xwayland && QStandardPaths::findExecutable("Xwayland").isEmpty())
        return QStringLiteral("xwayland");
    return {};
}

HeadlessWeston::HeadlessWeston(bool xwayland)
    : m_socket(QStringLiteral("pomvar-test-%1").arg(QCoreApplication::applicationPid()))
    , m_xwayland(xwayland)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", m_runtime.path());
    for (const char* name : { "WAYLAND_DISPLAY", "DISPLAY" })
        environment.remove(name);
    m_weston.setProcessEnvironment(environment);
    m_weston.setProcessChannelMode(QProcess::MergedChannels);
    QStringList arguments{ "--backend=headless-backend.so",
                           "--socket=" + m_socket,
                           "--width=1280",
                           "--height=800",
                           "--idle-time=0",
                           "--debug" };
    if (xwayland) {
        arguments << "--xwayland";
        // Made as X servers make it: anyone's, sticky (mkdir leaves that to the umask).
        if (::mkdir(qPrintable(kXSocketDir), 01777) == 0)
            ::chmod(qPrintable(kXSocketDir), 01777);
    }
    m_weston.start("weston", arguments);
}

HeadlessWeston::~HeadlessWeston()
{
    m_weston.terminate();
    if (!m_weston.waitForFinished(5000))
        m_weston.kill();
}

bool HeadlessWeston::waitUntilReady()
{
    // Which display XWayland took, weston alone says.
    static const QRegularExpression listening(R"(xserver listening on display :(\d+))");
    if (!m_weston.waitForStarted())
        return false;
    const bool ready = QTest::qWaitFor(
        [&] {
            if (m_weston.state() != QProcess::Running)
                return true;
            const QRegularExpressionMatch match = listening.match(QString::fromUtf8(log()));
            if (match.hasMatch())
                m_xDisplay = ':' + match.captured(1);
            return accepts(m_runtime.filePath(m_socket)) &&
                   (!m_xwayland ||
                    (match.hasMatch() && accepts(kXSocketDir + "/X" + match.captured(1))));
        },
        60000);
    return ready && m_weston.state() == QProcess::Running;
}

QByteArray HeadlessWeston::log() const
{
    auto& weston = const_cast<QProcess&>(m_weston);
    return weston.peek(1 << 20) + weston.errorString().toUtf8();
}

QList<QRect> HeadlessWeston::views() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", m_runtime.path());
    environment.insert("WAYLAND_DISPLAY", m_socket);
    // weston-debug streams until it is stopped; the scene graph is written at once.
    const ChildOutcome graph =
        runChild("timeout", { "2", "weston-debug", "scene-graph" }, 10000, environment);
    static const QRegularExpression position(
        R"(position: \((-?\d+), (-?\d+)\) -> \((-?\d+), (-?\d+)\))");
    QList<QRect> views;
    for (auto it = position.globalMatch(QString::fromUtf8(graph.out)); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        views.append(QRect(QPoint(match.captured(1).toInt(), match.captured(2).toInt()),
                           QPoint(match.captured(3).toInt() - 1, match.captured(4).toInt() - 1)));
    }
    return views;
}

} // namespace pomvar::test
