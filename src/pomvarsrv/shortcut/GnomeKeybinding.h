#pragma once

#include "pomvarsrv/shortcut/KeyChord.h"

#include <QString>

#include <optional>

namespace pomvar::srv {

// The shortcut as a custom keybinding of GNOME's settings (GSettings, the media keys' custom
// keybindings, as GNOME Settings writes them): GNOME itself then runs the command, under X11 and
// Wayland alike. Before registering, GNOME's own keybindings and the other custom ones are read:
// keys one of them takes are not registered, and the taker is named.
class GnomeKeybinding
{
public:
    // Whether the session is GNOME's (XDG_CURRENT_DESKTOP) and its schemas are installed.
    static bool available();

    // Registers the keys to run `command` under `name`, replacing Pomvar's earlier keybinding;
    // nothing when done, else what takes the keys (the summary of a GNOME keybinding, or the name
    // of another custom one).
    static std::optional<QString> apply(const KeyChord& chord,
                                        const QString& name,
                                        const QString& command);
    // Removes Pomvar's keybinding.
    static void remove();

    // The path of Pomvar's custom keybinding in GNOME's settings.
    static constexpr const char* kPath =
        "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/pomvar-search/";

private:
    static std::optional<QString> takenBy(const KeyChord& chord);
};

} // namespace pomvar::srv
