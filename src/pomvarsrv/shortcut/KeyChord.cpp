#include "pomvarsrv/shortcut/KeyChord.h"

#include <QRegularExpression>
#include <QStringList>

#include <array>

namespace pomvar::srv {

namespace {

struct Key
{
    const char* qtName; // Qt's portable name
    const char* xName;  // the X keysym's name, as GTK accelerators spell it
    std::uint32_t keysym;
};

// The keys besides letters, digits and function keys that a shortcut may end with.
constexpr std::array<Key, 28> kNamedKeys = { {
    { "Space", "space", 0x20 },      { "Return", "Return", 0xff0d },
    { "Enter", "KP_Enter", 0xff8d }, { "Esc", "Escape", 0xff1b },
    { "Tab", "Tab", 0xff09 },        { "Backspace", "BackSpace", 0xff08 },
    { "Ins", "Insert", 0xff63 },     { "Del", "Delete", 0xffff },
    { "Home", "Home", 0xff50 },      { "End", "End", 0xff57 },
    { "Left", "Left", 0xff51 },      { "Up", "Up", 0xff52 },
    { "Right", "Right", 0xff53 },    { "Down", "Down", 0xff54 },
    { "PgUp", "Page_Up", 0xff55 },   { "PgDown", "Page_Down", 0xff56 },
    { "Print", "Print", 0xff61 },    { "Pause", "Pause", 0xff13 },
    { ",", "comma", 0x2c },          { ".", "period", 0x2e },
    { "/", "slash", 0x2f },          { ";", "semicolon", 0x3b },
    { "'", "apostrophe", 0x27 },     { "[", "bracketleft", 0x5b },
    { "]", "bracketright", 0x5d },   { "\\", "backslash", 0x5c },
    { "-", "minus", 0x2d },          { "=", "equal", 0x3d },
} };

struct Named
{
    const char* name;
    std::uint16_t modifier;
};

// Qt's names and GTK's, Meta being Super in both (X11 has no separate Meta key in practice).
constexpr std::array<Named, 11> kModifiers = { {
    { "ctrl", KeyChord::control },
    { "control", KeyChord::control },
    { "primary", KeyChord::control },
    { "shift", KeyChord::shift },
    { "alt", KeyChord::alt },
    { "mod1", KeyChord::alt },
    { "meta", KeyChord::super },
    { "super", KeyChord::super },
    { "mod4", KeyChord::super },
    { "hyper", KeyChord::super },
    { "win", KeyChord::super },
} };

std::optional<std::uint16_t> modifierNamed(const QString& name)
{
    for (const Named& modifier : kModifiers)
        if (name.compare(QLatin1String(modifier.name), Qt::CaseInsensitive) == 0)
            return modifier.modifier;
    return std::nullopt;
}

// The keysym of a key named as Qt or as X names it.
std::optional<KeyChord> keyNamed(const QString& name)
{
    KeyChord chord;
    if (name.size() == 1 && name[0].isLetter() && name[0].unicode() < 0x80) {
        chord.keyName = name.toLower();
        chord.keysym = chord.keyName[0].unicode();
        return chord;
    }
    if (name.size() == 1 && name[0].isDigit()) {
        chord.keyName = name;
        chord.keysym = name[0].unicode();
        return chord;
    }
    static const QRegularExpression function(QStringLiteral("^[Ff]([1-9]|1[0-9]|2[0-4])$"));
    if (const auto match = function.match(name); match.hasMatch()) {
        chord.keyName = name.toUpper();
        chord.keysym = 0xffbe + match.captured(1).toUInt() - 1;
        return chord;
    }
    for (const Key& key : kNamedKeys)
        if (name.compare(QLatin1String(key.qtName), Qt::CaseInsensitive) == 0 ||
            name.compare(QLatin1String(key.xName), Qt::CaseInsensitive) == 0) {
            chord.keyName = QLatin1String(key.xName);
            chord.keysym = key.keysym;
            return chord;
        }
    return std::nullopt;
}

} // namespace

std::optional<KeyChord> KeyChord::fromPortableText(const QString& text)
{
    // One key: "Meta+Space"; a sequence of several ("Ctrl+K, Ctrl+S") is no global shortcut.
    if (text.trimmed().isEmpty() || text.contains(u','))
        return std::nullopt;
    QStringList parts = text.trimmed().split(u'+');
    const QString key = parts.takeLast();
    std::optional<KeyChord> chord = keyNamed(key);
    if (!chord)
        return std::nullopt;
    for (const QString& part : parts) {
        const auto modifier = modifierNamed(part.trimmed());
        if (!modifier)
            return std::nullopt;
        chord->modifiers |= *modifier;
    }
    return chord;
}

std::optional<KeyChord> KeyChord::fromGtkAccelerator(const QString& accelerator)
{
    static const QRegularExpression modifier(QStringLiteral("<([A-Za-z0-9_]+)>"));
    std::uint16_t modifiers = 0;
    qsizetype end = 0;
    for (auto it = modifier.globalMatch(accelerator); it.hasNext();) {
        const auto match = it.next();
        if (match.capturedStart() != end)
            return std::nullopt;
        const auto mask = modifierNamed(match.captured(1));
        if (!mask)
            return std::nullopt;
        modifiers |= *mask;
        end = match.capturedEnd();
    }
    std::optional<KeyChord> chord = keyNamed(accelerator.mid(end));
    if (chord)
        chord->modifiers = modifiers;
    return chord;
}

QString KeyChord::gtkAccelerator() const
{
    QString text;
    for (const auto& [mask, name] : { std::pair(super, "<Super>"),
                                      { control, "<Primary>" },
                                      { alt, "<Alt>" },
                                      { shift, "<Shift>" } })
        if (modifiers & mask)
            text += QLatin1String(name);
    return text + keyName;
}

bool KeyChord::sameKeys(const KeyChord& other) const
{
    return modifiers == other.modifiers && keysym == other.keysym;
}

} // namespace pomvar::srv
