#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace pomvar::srv {

// One key with its modifiers, as the window systems name it: the X keysym and its name, and the
// modifiers as X11 masks. Read from Qt's portable text of a key sequence ("Meta+Space", Meta being
// the Super key) or from a GTK accelerator ("<Super>space"), so that a shortcut can be grabbed on
// X11, written into GNOME's settings and compared with GNOME's own.
struct KeyChord
{
    enum Modifier : std::uint16_t
    {
        shift = 1,   // ShiftMask
        control = 4, // ControlMask
        alt = 8,     // Mod1Mask
        super = 64,  // Mod4Mask
    };

    std::uint16_t modifiers = 0;
    std::uint32_t keysym = 0;
    QString keyName; // the keysym's name: "space", "a", "F1"

    // Nothing for an empty text, more than one key, or a key without an X name here.
    static std::optional<KeyChord> fromPortableText(const QString& text);
    static std::optional<KeyChord> fromGtkAccelerator(const QString& accelerator);
    QString gtkAccelerator() const;

    // The same keys, whatever the names' case.
    bool sameKeys(const KeyChord& other) const;
};

} // namespace pomvar::srv
