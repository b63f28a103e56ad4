#include "WindowTiming.h"

#include "SrvClient.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWidget>

namespace pomvar::bench {

namespace {

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

QWidget* WindowTiming::activeWindow(const QString& objectName, int timeoutMs)
{
    QWidget* found = nullptr;
    const bool active = QTest::qWaitFor(
        [&] {
            QWidget* active = QApplication::activeWindow();
            found = active && active->objectName() == objectName ? active : nullptr;
            return found != nullptr;
        },
        timeoutMs);
    return active ? found : nullptr;
}

double WindowTiming::openingMs(quint16 port, const std::string& request, const QString& window)
{
    test::SrvClient client;
    client.connectTo(port);
    QElapsedTimer clock;
    clock.start();
    client.send(request);
    return activeWindow(window, 10000) ? clock.nsecsElapsed() / 1e6 : -1;
}

double WindowTiming::repaintMs(QWidget& widget, const std::function<void()>& action)
{
    PaintClock paint;
    widget.installEventFilter(&paint);
    paint.clock.start();
    action();
    const bool painted = QTest::qWaitFor([&] { return paint.paintedMs >= 0; }, 1000);
    widget.removeEventFilter(&paint);
    return painted ? paint.paintedMs : -1;
}

} // namespace pomvar::bench
