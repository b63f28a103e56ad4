#pragma once

#include <QString>

#include <functional>
#include <string>

class QWidget;

namespace pomvar::bench {

// Times the windows of a runtime server run in-process, as the user sees them: from a request
// to the window shown and active, and from a key typed to the list repainted.
class WindowTiming
{
public:
    // The top-level window of that object name once it is shown and active; null after the time.
    static QWidget* activeWindow(const QString& objectName, int timeoutMs = 5000);
    // Milliseconds from sending the request to the window of that object name shown and active;
    // -1 when it did not show. The window stays open.
    static double openingMs(quint16 port, const std::string& request, const QString& window);
    // Milliseconds from the action to the widget's next paint; -1 when nothing painted in 1 s.
    static double repaintMs(QWidget& widget, const std::function<void()>& action);
};

} // namespace pomvar::bench
