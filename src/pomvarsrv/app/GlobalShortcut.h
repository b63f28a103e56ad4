#pragma once

#include "pomvarsrv/shortcut/X11KeyGrab.h"

#include <QObject>
#include <QString>

#include <optional>
#include <string>

namespace pomvar::srv {

// The keys that open the search window from anywhere, set up the way this desktop allows: a
// custom keybinding in GNOME's settings under GNOME (X11 or Wayland), which runs
// `pomvarsrv --search`; the key grabbed on any other X11 desktop; nothing elsewhere, where the
// user binds the command in the desktop's own settings. Keys another program holds are left to it.
class GlobalShortcut : public QObject
{
    Q_OBJECT

public:
    enum class State
    {
        off,
        grabbed,    // on X11
        registered, // in GNOME's settings
        taken,
        invalid,
        unsupported,
    };

    // `command` is what GNOME runs: `pomvarsrv --search`, quoted for a shell.
    explicit GlobalShortcut(QString command, QObject* parent = nullptr);

    // The keys as Qt writes them portably ("Meta+Space"); empty: none. Keys applied already are
    // left as they are.
    void apply(const std::string& keys);
    State state() const { return m_state; }
    // What the keys do now, in a sentence for the settings.
    QString stateText() const;

Q_SIGNALS:
    // The grabbed keys were pressed, at that X server time.
    void pressed(quint32 time);

private:
    QString m_command;
    X11KeyGrab m_grab;
    State m_state = State::off;
    std::optional<std::string> m_applied;
    QString m_keys;    // as shown to the user
    QString m_takenBy; // a GNOME keybinding's summary, when GNOME's own takes the keys
};

} // namespace pomvar::srv
