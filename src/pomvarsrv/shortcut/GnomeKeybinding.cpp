#include "pomvarsrv/shortcut/GnomeKeybinding.h"

#include <QLoggingCategory>

#include <gio/gio.h>

#include <memory>

namespace pomvar::srv {

namespace {

Q_LOGGING_CATEGORY(lcGnome, "pomvarsrv.shortcut")

constexpr const char* kMediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char* kCustom = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char* kCustomList = "custom-keybindings";
// GNOME's own keybindings: the window manager's, the shell's and the media keys.
constexpr const char* kKeybindingSchemas[] = {
    "org.gnome.desktop.wm.keybindings",
    "org.gnome.shell.keybindings",
    "org.gnome.mutter.keybindings",
    "org.gnome.mutter.wayland.keybindings",
    "org.gnome.settings-daemon.plugins.media-keys",
};

using Settings = std::unique_ptr<GSettings, decltype(&g_object_unref)>;
using Strings = std::unique_ptr<gchar*, decltype(&g_strfreev)>;
using Text = std::unique_ptr<gchar, decltype(&g_free)>;

bool installed(const char* schema)
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    GSettingsSchema* found =
        source ? g_settings_schema_source_lookup(source, schema, TRUE) : nullptr;
    if (found)
        g_settings_schema_unref(found);
    return found;
}

Settings settings(const char* schema, const char* path = nullptr)
{
    return { path ? g_settings_new_with_path(schema, path) : g_settings_new(schema),
             &g_object_unref };
}

// The accelerators a key holds, as a list ("as") or one ("s").
QStringList acceleratorsOf(GSettings* settings, const char* key)
{
    QStringList accelerators;
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> value(
        g_settings_get_value(settings, key), &g_variant_unref);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
        accelerators << QString::fromUtf8(g_variant_get_string(value.get(), nullptr));
    else if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY)) {
        const std::unique_ptr<const gchar*, decltype(&g_free)> list(
            g_variant_get_strv(value.get(), nullptr), &g_free);
        for (const gchar* const* item = list.get(); *item; ++item)
            accelerators << QString::fromUtf8(*item);
    }
    return accelerators;
}

bool holds(const QStringList& accelerators, const KeyChord& chord)
{
    for (const QString& accelerator : accelerators) {
        const auto other = KeyChord::fromGtkAccelerator(accelerator);
        if (other && other->sameKeys(chord))
            return true;
    }
    return false;
}

} // namespace

bool GnomeKeybinding::available()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return desktops.contains(QStringLiteral("GNOME"), Qt::CaseInsensitive) &&
           installed(kMediaKeys) && installed(kCustom);
}

std::optional<QString> GnomeKeybinding::takenBy(const KeyChord& chord)
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    for (const char* name : kKeybindingSchemas) {
        GSettingsSchema* schema = g_settings_schema_source_lookup(source, name, TRUE);
        if (!schema)
            continue;
        const Settings values = settings(name);
        const Strings keys(g_settings_schema_list_keys(schema), &g_strfreev);
        std::optional<QString> taker;
        for (gchar** key = keys.get(); *key && !taker; ++key)
            if (holds(acceleratorsOf(values.get(), *key), chord)) {
                GSettingsSchemaKey* found = g_settings_schema_get_key(schema, *key);
                const char* summary = g_settings_schema_key_get_summary(found);
                taker = QString::fromUtf8(summary ? summary : *key);
                g_settings_schema_key_unref(found);
            }
        g_settings_schema_unref(schema);
        if (taker)
            return taker;
    }
    const Settings mediaKeys = settings(kMediaKeys);
    const Strings paths(g_settings_get_strv(mediaKeys.get(), kCustomList), &g_strfreev);
    for (gchar** path = paths.get(); *path; ++path) {
        if (qstrcmp(*path, kPath) == 0)
            continue;
        const Settings custom = settings(kCustom, *path);
        if (holds(acceleratorsOf(custom.get(), "binding"), chord)) {
            const Text name(g_settings_get_string(custom.get(), "name"), &g_free);
            return QString::fromUtf8(name.get());
        }
    }
    return std::nullopt;
}

std::optional<QString> GnomeKeybinding::apply(const KeyChord& chord,
                                              const QString& name,
                                              const QString& command)
{
    if (auto taker = takenBy(chord)) {
        remove();
        return taker;
    }
    const Settings custom = settings(kCustom, kPath);
    g_settings_set_string(custom.get(), "name", name.toUtf8().constData());
    g_settings_set_string(custom.get(), "command", command.toUtf8().constData());
    g_settings_set_string(custom.get(), "binding", chord.gtkAccelerator().toUtf8().constData());
    const Settings mediaKeys = settings(kMediaKeys);
    const Strings paths(g_settings_get_strv(mediaKeys.get(), kCustomList), &g_strfreev);
    if (!g_strv_contains(paths.get(), kPath)) {
        GStrvBuilder* builder = g_strv_builder_new();
        g_strv_builder_addv(builder, const_cast<const char**>(paths.get()));
        g_strv_builder_add(builder, kPath);
        const Strings added(g_strv_builder_end(builder), &g_strfreev);
        g_strv_builder_unref(builder);
        g_settings_set_strv(mediaKeys.get(), kCustomList, added.get());
    }
    g_settings_sync();
    qCInfo(lcGnome) << "registered" << chord.gtkAccelerator() << "as a GNOME custom keybinding";
    return std::nullopt;
}

void GnomeKeybinding::remove()
{
    const Settings mediaKeys = settings(kMediaKeys);
    const Strings paths(g_settings_get_strv(mediaKeys.get(), kCustomList), &g_strfreev);
    if (!g_strv_contains(paths.get(), kPath))
        return;
    GStrvBuilder* builder = g_strv_builder_new();
    for (gchar** path = paths.get(); *path; ++path)
        if (qstrcmp(*path, kPath) != 0)
            g_strv_builder_add(builder, *path);
    const Strings kept(g_strv_builder_end(builder), &g_strfreev);
    g_strv_builder_unref(builder);
    g_settings_set_strv(mediaKeys.get(), kCustomList, kept.get());
    const Settings custom = settings(kCustom, kPath);
    for (const char* key : { "name", "command", "binding" })
        g_settings_reset(custom.get(), key);
    g_settings_sync();
}

} // namespace pomvar::srv
