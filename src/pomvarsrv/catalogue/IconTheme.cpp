// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gio.h>

#include "pomvarsrv/catalogue/IconTheme.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMap>
#include <QSet>
#include <QStandardPaths>

#include <climits>

namespace pomvar::srv {

namespace {

using Groups = QMap<QString, QHash<QString, QString>>;

constexpr const char* kExtensions[] = { ".png", ".svg", ".xpm" };

// Whether a file of a theme's folder is an icon: an image of an extension above, in any case, as
// QDir's name filters match.
bool isIconFile(const QString& file)
{
    for (const char* extension : kExtensions)
        if (file.endsWith(QLatin1String(extension), Qt::CaseInsensitive))
            return true;
    return false;
}

// The index of `value` in the short `list`, appended when missing.
int indexIn(QStringList& list, const QString& value)
{
    qsizetype at = list.indexOf(value);
    if (at < 0) {
        at = list.size();
        list.append(value);
    }
    return int(at);
}

// Reads a key file (index.theme, kdeglobals) with GLib's parser; an unreadable file gives no
// groups.
Groups readIni(const QString& path)
{
    Groups groups;
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (!g_key_file_load_from_file(
            file, QFile::encodeName(path).constData(), G_KEY_FILE_NONE, nullptr))
        return groups;
    g_auto(GStrv) names = g_key_file_get_groups(file, nullptr);
    for (gchar** group = names; *group; ++group) {
        g_auto(GStrv) keys = g_key_file_get_keys(file, *group, nullptr, nullptr);
        for (gchar** key = keys; key && *key; ++key) {
            g_autofree gchar* value = g_key_file_get_value(file, *group, *key, nullptr);
            groups[QString::fromUtf8(*group)].insert(QString::fromUtf8(*key),
                                                     QString::fromUtf8(value));
        }
    }
    return groups;
}

QStringList listValue(const QHash<QString, QString>& group, const QString& key)
{
    QStringList values;
    for (const auto& value : group.value(key).split(u',', Qt::SkipEmptyParts))
        values.append(value.trimmed());
    return values;
}

int intValue(const QHash<QString, QString>& group, const QString& key, int fallback)
{
    bool ok = false;
    const int value = group.value(key).toInt(&ok);
    return ok ? value : fallback;
}

QString gnomeIconTheme()
{
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (!source)
        return {};
    GSettingsSchema* schema =
        g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", TRUE);
    if (!schema)
        return {};
    QString theme;
    if (g_settings_schema_has_key(schema, "icon-theme")) {
        GSettings* settings = g_settings_new("org.gnome.desktop.interface");
        gchar* value = g_settings_get_string(settings, "icon-theme");
        theme = QString::fromUtf8(value);
        g_free(value);
        g_object_unref(settings);
    }
    g_settings_schema_unref(schema);
    return theme;
}

QString kdeIconTheme()
{
    const QString path =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/kdeglobals";
    if (!QFileInfo::exists(path))
        return {};
    return readIni(path).value(QStringLiteral("Icons")).value(QStringLiteral("Theme"));
}

} // namespace

int IconTheme::Candidate::distanceAt(int wanted) const
{
    int distance = 0;
    switch (type) {
        case Type::fixed:
            distance = size - wanted;
            break;
        case Type::scalable:
            distance =
                wanted < minSize ? minSize - wanted : (wanted > maxSize ? maxSize - wanted : 0);
            break;
        case Type::threshold:
            distance = wanted < size - threshold
                           ? size - threshold - wanted
                           : (wanted > size + threshold ? size + threshold - wanted : 0);
            break;
    }
    // Scaling down keeps more detail than scaling up: a smaller image counts double.
    return distance >= 0 ? distance : -2 * distance;
}

IconTheme::IconTheme(const QString& userTheme,
                     const QStringList& iconDirs,
                     const QStringList& pixmapDirs)
    : m_pixmapDirs(pixmapDirs)
{
    if (!userTheme.isEmpty())
        loadTheme(userTheme, iconDirs);
    loadTheme(QStringLiteral("Adwaita"), iconDirs);
    loadTheme(QStringLiteral("hicolor"), iconDirs);
}

QStringList IconTheme::defaultIconDirs()
{
    // The user's data folder first, then the legacy ~/.icons, then the system's data folders.
    QStringList dirs = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString& dir : dirs)
        dir += QStringLiteral("/icons");
    dirs.insert(1, QDir::homePath() + QStringLiteral("/.icons"));
    dirs.removeDuplicates();
    return dirs;
}

QStringList IconTheme::defaultPixmapDirs()
{
    return { QStringLiteral("/usr/share/pixmaps") };
}

QString IconTheme::userThemeName()
{
    // Without a platform theme (offscreen, minimal) Qt reports nothing or its own default.
    const QString qtTheme = QIcon::themeName();
    if (!qtTheme.isEmpty() && qtTheme != QStringLiteral("hicolor"))
        return qtTheme;
    const bool kde = qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QStringLiteral("KDE"));
    QString theme = kde ? kdeIconTheme() : QString();
    if (theme.isEmpty())
        theme = gnomeIconTheme();
    if (theme.isEmpty())
        theme = kdeIconTheme();
    return theme;
}

bool IconTheme::loadTheme(const QString& name, const QStringList& iconDirs)
{
    for (const auto& theme : m_themes) {
        if (theme.name == name)
            return true;
    }
    QStringList roots;
    Groups index;
    for (const auto& base : iconDirs) {
        const QString root = base + u'/' + name;
        if (!QFileInfo(root).isDir())
            continue;
        roots.append(root);
        if (index.isEmpty() && QFileInfo::exists(root + QStringLiteral("/index.theme")))
            index = readIni(root + QStringLiteral("/index.theme"));
    }
    if (index.isEmpty())
        return false;

    Theme theme{ name, {}, {}, {} };
    const auto& head = index.value(QStringLiteral("Icon Theme"));
    QStringList directories = listValue(head, QStringLiteral("Directories"));
    directories += listValue(head, QStringLiteral("ScaledDirectories"));
    for (const auto& directory : directories) {
        const auto& group = index.value(directory);
        Candidate proto;
        const int scale = std::max(1, intValue(group, QStringLiteral("Scale"), 1));
        proto.size = intValue(group, QStringLiteral("Size"), 0) * scale;
        if (proto.size <= 0)
            continue;
        proto.minSize = intValue(group, QStringLiteral("MinSize"), proto.size / scale) * scale;
        proto.maxSize = intValue(group, QStringLiteral("MaxSize"), proto.size / scale) * scale;
        proto.threshold = intValue(group, QStringLiteral("Threshold"), 2);
        const QString type = group.value(QStringLiteral("Type"), QStringLiteral("Threshold"));
        proto.type = type == QStringLiteral("Fixed")      ? Candidate::Type::fixed
                     : type == QStringLiteral("Scalable") ? Candidate::Type::scalable
                                                          : Candidate::Type::threshold;
        for (const auto& root : roots) {
            const QString folder = root + u'/' + directory;
            proto.folder = int(theme.folders.size());
            theme.folders.append(folder + u'/');
            QDirIterator files(folder, QDir::Files);
            while (files.hasNext()) {
                files.next();
                const QString file = files.fileName();
                if (!isIconFile(file))
                    continue;
                Candidate candidate = proto;
                candidate.extension = indexIn(theme.extensions, file.right(4));
                theme.icons[file.left(file.size() - 4)].push_back(candidate);
            }
        }
    }
    m_themes.push_back(std::move(theme));
    for (const auto& parent : listValue(head, QStringLiteral("Inherits")))
        loadTheme(parent, iconDirs);
    return true;
}

QString IconTheme::find(const QString& name, int size) const
{
    if (name.isEmpty())
        return {};
    for (const auto& theme : m_themes) {
        const auto it = theme.icons.constFind(name);
        if (it == theme.icons.constEnd())
            continue;
        const Candidate* best = nullptr;
        int bestDistance = INT_MAX;
        for (const auto& candidate : *it) {
            const int distance = candidate.distanceAt(size);
            if (distance < bestDistance) {
                best = &candidate;
                bestDistance = distance;
            }
        }
        if (best)
            return theme.folders[best->folder] + name + theme.extensions[best->extension];
    }
    for (const auto& dir : m_pixmapDirs) {
        for (const auto* extension : kExtensions) {
            const QString path = dir + u'/' + name + QLatin1String(extension);
            if (QFileInfo::exists(path))
                return path;
        }
    }
    return {};
}

QStringList IconTheme::themeNames() const
{
    QStringList names;
    for (const auto& theme : m_themes)
        names.append(theme.name);
    return names;
}

QStringList IconTheme::iconNames() const
{
    QSet<QString> names;
    for (const auto& theme : m_themes) {
        for (auto it = theme.icons.keyBegin(); it != theme.icons.keyEnd(); ++it)
            names.insert(*it);
    }
    QStringList sorted(names.begin(), names.end());
    sorted.sort();
    return sorted;
}

} // namespace pomvar::srv
