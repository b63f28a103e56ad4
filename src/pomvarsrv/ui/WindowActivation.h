#pragma once

#include <QString>

class QWidget;

namespace pomvar::srv {

// How a server window takes the focus when the user asked from elsewhere: the panel, a global
// shortcut, the desktop entry's action. Window systems keep windows from stealing the focus, so
// the request carries proof of the user's action when one was given: under Wayland an XDG
// activation token, under X11 the timestamp of the key or click, which window managers compare
// with the current focus's (an X11 startup id ends in "_TIME<timestamp>"). A token serves the
// next window shown, once, within a few seconds.
class WindowActivation
{
public:
    static void setToken(const QString& token);
    // Raises the shown window and gives it the focus, with the token when there is one.
    static void activate(QWidget& window);

private:
    static bool activateOnX11(QWidget& window, quint32 time);
};

} // namespace pomvar::srv
