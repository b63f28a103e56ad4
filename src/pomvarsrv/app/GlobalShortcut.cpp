#include "pomvarsrv/app/GlobalShortcut.h"

#include "pomvarsrv/app/ServerLog.h"
#include "pomvarsrv/shortcut/GnomeKeybinding.h"
#include "pomvarsrv/ui/ShortcutRecorder.h"

namespace pomvar::srv {

GlobalShortcut::GlobalShortcut(QString command, QObject* parent)
    : QObject(parent)
    , m_command(std::move(command))
{
    connect(&m_grab, &X11KeyGrab::pressed, this, &GlobalShortcut::pressed);
}

void GlobalShortcut::apply(const std::string& keys)
{
    if (m_applied == keys)
        return;
    m_applied = keys;
    const QString text = QString::fromStdString(keys);
    m_keys =
        ShortcutRecorder::displayText(QKeySequence::fromString(text, QKeySequence::PortableText));
    m_takenBy.clear();
    m_grab.ungrab();
    const bool gnome = GnomeKeybinding::available();
    const auto chord = KeyChord::fromPortableText(text);
    if (text.isEmpty() || !chord) {
        if (gnome)
            GnomeKeybinding::remove();
        m_state = text.isEmpty() ? State::off : State::invalid;
    } else if (gnome) {
        //: The name of Pomvar's shortcut among GNOME's keyboard shortcuts.
        const auto taker = GnomeKeybinding::apply(*chord, tr("Pomvar: Search Apps"), m_command);
        m_takenBy = taker.value_or(QString());
        m_state = taker ? State::taken : State::registered;
    } else if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        switch (m_grab.grab(*chord)) {
            case X11KeyGrab::Result::grabbed:
                m_state = State::grabbed;
                break;
            case X11KeyGrab::Result::taken:
                m_state = State::taken;
                break;
            case X11KeyGrab::Result::noKey:
                m_state = State::invalid;
                break;
            case X11KeyGrab::Result::noDisplay:
                m_state = State::unsupported;
                break;
        }
    } else {
        // A Wayland desktop other than GNOME: an X11 grab would only see keys typed into X11
        // windows.
        m_state = State::unsupported;
    }
    qCInfo(lcApp) << "search shortcut" << text << "state" << int(m_state);
}

QString GlobalShortcut::stateText() const
{
    switch (m_state) {
        case State::off:
            return tr("No keys open the search window.");
        case State::grabbed:
            return tr("%1 opens the search window anywhere on this desktop.").arg(m_keys);
        case State::registered:
            return tr("%1 opens the search window: it is one of GNOME's keyboard shortcuts.")
                .arg(m_keys);
        case State::taken:
            if (!m_takenBy.isEmpty())
                //: %1: the keys; %2: what GNOME does with them.
                return tr("%1 is taken by GNOME's shortcut \u201c%2\u201d. Choose other keys, or "
                          "change that shortcut in GNOME's Settings.")
                    .arg(m_keys, m_takenBy);
            return tr("%1 is taken by another program. Choose other keys.").arg(m_keys);
        case State::invalid:
            return tr("%1 cannot open the search window from anywhere. Choose other keys.")
                .arg(m_keys);
        case State::unsupported:
            break;
    }
    //: %1: a command; %2: the keys.
    return tr("This desktop does not let Pomvar set its shortcut: bind the command %1 to %2 in "
              "its keyboard settings.")
        .arg(m_command, m_keys);
}

} // namespace pomvar::srv
