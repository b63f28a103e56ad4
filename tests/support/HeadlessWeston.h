#pragma once

#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

namespace pomvar::test {

// A real Wayland compositor for a test: weston's headless backend (1280 × 800, desktop shell),
// optionally with XWayland, in a runtime folder of its own. Its debug protocol lists the
// surfaces it shows.
class HeadlessWeston
{
public:
    // What is missing to run it ("" when nothing): the Debian package's name.
    static QString missingPackage(bool xwayland);

    explicit HeadlessWeston(bool xwayland);
    ~HeadlessWeston();

    // Waits until its Wayland socket, and XWayland's X socket, take clients; false when weston
    // failed.
    bool waitUntilReady();
    QString runtimeDir() const { return m_runtime.path(); }
    QString socket() const { return m_socket; }
    // XWayland's display (":1"), empty without it.
    QString xDisplay() const { return m_xDisplay; }
    QByteArray log() const;
    // The rectangles of the views the compositor shows now, in its global coordinates.
    QList<QRect> views() const;

private:
    QTemporaryDir m_runtime;
    QString m_socket;
    QString m_xDisplay;
    bool m_xwayland;
    QProcess m_weston;
};

} // namespace pomvar::test
