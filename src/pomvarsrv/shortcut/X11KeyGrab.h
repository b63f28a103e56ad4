#pragma once

#include "pomvarsrv/shortcut/KeyChord.h"

#include <QObject>

#include <memory>
#include <vector>

class QSocketNotifier;
struct xcb_connection_t;

namespace pomvar::srv {

// A global shortcut on X11: the key grabbed on the root window over a connection of its own to
// the display, so that it works on any X11 desktop whatever the window manager, and whichever
// display Qt itself uses. Caps Lock and Num Lock do not matter. Only one client can grab a key:
// when another holds it, the grab reports it taken.
class X11KeyGrab : public QObject
{
    Q_OBJECT

public:
    enum class Result
    {
        grabbed,
        taken,
        noDisplay,
        noKey, // the keyboard has no such key
    };

    explicit X11KeyGrab(QObject* parent = nullptr);
    ~X11KeyGrab() override;

    // Replaces the key grabbed before, if any.
    Result grab(const KeyChord& chord);
    void ungrab();

Q_SIGNALS:
    // The key was pressed; `time` is the X server's timestamp of the press.
    void pressed(quint32 time);

private:
    bool connect();
    void readEvents();

    xcb_connection_t* m_connection = nullptr;
    quint32 m_root = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
    // What is grabbed: a key code and modifiers, once per lock combination.
    std::vector<std::pair<quint8, quint16>> m_grabbed;
};

} // namespace pomvar::srv
