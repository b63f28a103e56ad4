#include "HeadlessWeston.h"

#include "ChildProcess.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace pomvar::test {

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
    if (xwayland)
        arguments << "--xwayland";
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
    static const QRegularExpression listening(R"(xserver listening on display (:\d+))");
    const QString socket = m_runtime.filePath(m_socket);
    if (!m_weston.waitForStarted())
        return false;
    const bool ready = QTest::qWaitFor(
        [&] {
            if (m_weston.state() != QProcess::Running)
                return true;
            m_weston.waitForReadyRead(10);
            const QRegularExpressionMatch match = listening.match(QString::fromUtf8(log()));
            if (match.hasMatch())
                m_xDisplay = match.captured(1);
            return QFile::exists(socket) && (!m_xwayland || !m_xDisplay.isEmpty());
        },
        20000);
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
