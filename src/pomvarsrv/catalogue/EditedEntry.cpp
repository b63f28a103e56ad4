// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "pomvarsrv/catalogue/EditedEntry.h"

#include "pomvarsrv/catalogue/CatalogueLog.h"
#include "pomvarsrv/model/AtomicFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace pomvar::srv {

namespace {

const char* const kGroup = G_KEY_FILE_DESKTOP_GROUP;

QString utf8(const char* text)
{
    return QString::fromUtf8(text ? text : "");
}

QString userApplications()
{
    return QFile::decodeName(g_get_user_data_dir()) + QStringLiteral("/applications");
}

// The paths a desktop file id may have below an applications folder: "a-b.desktop" is
// "a-b.desktop" or "a/b.desktop".
QStringList relativePaths(const QString& id)
{
    QStringList paths{ QString() };
    const QStringList parts = id.split(u'-');
    for (int i = 0; i < parts.size(); ++i) {
        QStringList next;
        for (const QString& path : paths) {
            if (i == 0) {
                next << parts[i];
                continue;
            }
            next << path + u'-' + parts[i];
            // Folders nest at most a few levels; beyond, the id is read as written.
            if (i < 6)
                next << path + u'/' + parts[i];
        }
        paths = next;
    }
    return paths;
}

// The installed entry of that id in the system's data folders; empty when there is none.
QString installedEntry(const QString& id)
{
    for (const char* const* dir = g_get_system_data_dirs(); *dir; ++dir) {
        for (const QString& relative : relativePaths(id)) {
            const QString path =
                QFile::decodeName(*dir) + QStringLiteral("/applications/") + relative;
            if (QFileInfo(path).isFile())
                return path;
        }
    }
    return {};
}

bool load(GKeyFile* file, const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    return g_key_file_load_from_file(
        file,
        name.constData(),
        GKeyFileFlags(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS),
        nullptr);
}

// The key without its translations: the user's text shows in every language.
void setText(GKeyFile* file, const char* key, const QString& value)
{
    gsize count = 0;
    g_auto(GStrv) keys = g_key_file_get_keys(file, kGroup, &count, nullptr);
    const QByteArray localised = QByteArray(key) + '[';
    for (gsize i = 0; i < count; ++i) {
        if (QByteArray(keys[i]).startsWith(localised))
            g_key_file_remove_key(file, kGroup, keys[i], nullptr);
    }
    if (value.isEmpty())
        g_key_file_remove_key(file, kGroup, key, nullptr);
    else
        g_key_file_set_string(file, kGroup, key, value.toUtf8().constData());
}

} // namespace

std::optional<EditedEntry> EditedEntry::read(const QString& desktopId)
{
    g_autoptr(GDesktopAppInfo) info = g_desktop_app_info_new(desktopId.toUtf8().constData());
    if (!info)
        return std::nullopt;
    EditedEntry entry;
    entry.m_id = desktopId;
    entry.m_path = utf8(g_desktop_app_info_get_filename(info));
    // An entry of the user's own is edited where it is; an installed one gets a copy.
    const QString user = userApplications();
    entry.m_copy = entry.m_path.startsWith(user + u'/') ? entry.m_path : user + u'/' + desktopId;
    entry.m_original = installedEntry(desktopId);
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (!load(file, entry.m_path))
        return std::nullopt;
    const auto text = [&](const char* key) {
        g_autofree gchar* value = g_key_file_get_locale_string(file, kGroup, key, nullptr, nullptr);
        return utf8(value);
    };
    entry.m_fields.name = text(G_KEY_FILE_DESKTOP_KEY_NAME);
    entry.m_fields.comment = text(G_KEY_FILE_DESKTOP_KEY_COMMENT);
    entry.m_fields.icon = text(G_KEY_FILE_DESKTOP_KEY_ICON);
    entry.m_fields.command = text(G_KEY_FILE_DESKTOP_KEY_EXEC);
    entry.m_fields.categories =
        text(G_KEY_FILE_DESKTOP_KEY_CATEGORIES).split(u';', Qt::SkipEmptyParts);
    return entry;
}

bool EditedEntry::canRevert() const
{
    return !m_original.isEmpty() && m_copy != m_original && QFileInfo::exists(m_copy);
}

bool EditedEntry::save(const Fields& fields) const
{
    g_autoptr(GKeyFile) file = g_key_file_new();
    if (!load(file, m_path))
        return false;
    setText(file, G_KEY_FILE_DESKTOP_KEY_NAME, fields.name);
    setText(file, G_KEY_FILE_DESKTOP_KEY_COMMENT, fields.comment);
    setText(file, G_KEY_FILE_DESKTOP_KEY_ICON, fields.icon);
    setText(file, G_KEY_FILE_DESKTOP_KEY_EXEC, fields.command);
    if (fields.categories.isEmpty()) {
        g_key_file_remove_key(file, kGroup, G_KEY_FILE_DESKTOP_KEY_CATEGORIES, nullptr);
    } else {
        // Written as the rules ask: each one followed by ";".
        const QByteArray list = fields.categories.join(u';').toUtf8() + ';';
        g_key_file_set_string(file, kGroup, G_KEY_FILE_DESKTOP_KEY_CATEGORIES, list.constData());
    }
    gsize size = 0;
    g_autofree gchar* text = g_key_file_to_data(file, &size, nullptr);
    const bool written = AtomicFile::write(m_copy, QByteArrayView(text, qsizetype(size)));
    qCInfo(lcCatalogue) << (written ? "edited" : "cannot write") << m_copy;
    return written;
}

bool EditedEntry::revert() const
{
    if (!canRevert())
        return false;
    const bool removed = QFile::remove(m_copy);
    qCInfo(lcCatalogue) << (removed ? "reverted" : "cannot remove") << m_copy;
    return removed;
}

QString EditedEntry::commandProblem(const QString& command)
{
    // The Desktop Entry rules: these characters only inside double quotes, where a backslash
    // goes before ", `, $ and itself; field codes outside them.
    static const QString reserved = QStringLiteral("\t\n'\\><~|&;$*?#()`");
    static const QString escaped = QStringLiteral("\"`$\\");
    static const QString codes = QStringLiteral("fFuUick%");
    const QString text = command.trimmed();
    if (text.isEmpty())
        return tr("A command is needed.");
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const QString next = text.mid(i + 1, 1);
        if (quoted && c == u'\\') {
            if (next.isEmpty() || !escaped.contains(next))
                return tr("Inside double quotes, a backslash goes before \", `, $ or \\ only.");
            ++i;
        } else if (quoted && (c == u'`' || c == u'$')) {
            //: %1: a character of the command.
            return tr("Inside double quotes, \u201c%1\u201d needs a backslash before it.").arg(c);
        } else if (c == u'"') {
            quoted = !quoted;
        } else if (!quoted && c == u'%') {
            if (next.isEmpty() || !codes.contains(next))
                //: %1: what follows a percent sign in the command.
                return tr("\u201c%%1\u201d is not a field code: write %% for a percent sign.")
                    .arg(next);
            ++i;
        } else if (!quoted && reserved.contains(c)) {
            //: %1: a character of the command.
            return tr("\u201c%1\u201d must be inside double quotes.").arg(c);
        }
    }
    if (quoted)
        return tr("A double quote is not closed.");
    return {};
}

} // namespace pomvar::srv
