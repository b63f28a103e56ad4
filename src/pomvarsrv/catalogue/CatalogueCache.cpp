// GIO before Qt: its headers use names that Qt's keywords would break.
#include "wire/UserPaths.h"

#include <glib.h>

#include "pomvarsrv/catalogue/CatalogueCache.h"

#include "pomvarsrv/model/AtomicFile.h"
#include "wire/Version.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <array>

namespace pomvar::srv {

namespace {

constexpr std::string_view kMagic = "pomvar-catalogue 2\n";
constexpr std::size_t kFields = 11;
constexpr QChar kKeywordSeparator = u'\x1f';

// The fields of one app, in the file's order.
std::array<std::string, kFields> fieldsOf(const AppEntry& app, const DesktopApp& entry)
{
    return { app.key,
             app.name,
             app.bundleId,
             app.iconPath,
             app.iconPath2x,
             entry.icon.toStdString(),
             entry.untranslatedName.toStdString(),
             entry.genericName.toStdString(),
             entry.keywords.join(kKeywordSeparator).toStdString(),
             entry.comment.toStdString(),
             entry.program.toStdString() };
}

void readApp(const std::array<std::string_view, kFields>& fields, CatalogueCache::Catalogue& into)
{
    const auto text = [&](std::size_t i) {
        return QString::fromUtf8(fields[i].data(), qsizetype(fields[i].size()));
    };
    into.apps.push_back(AppEntry{ std::string(fields[0]),
                                  std::string(fields[1]),
                                  std::string(fields[2]),
                                  std::string(fields[3]),
                                  std::string(fields[4]) });
    DesktopApp entry;
    entry.id = fields[0];
    entry.name = fields[1];
    entry.icon = text(5);
    entry.untranslatedName = text(6);
    entry.genericName = text(7);
    entry.keywords = text(8).split(kKeywordSeparator, Qt::SkipEmptyParts);
    entry.comment = text(9);
    entry.program = text(10);
    into.entries.push_back(std::move(entry));
}

std::string sha1(std::string_view data)
{
    return QCryptographicHash::hash(QByteArrayView(data.data(), qsizetype(data.size())),
                                    QCryptographicHash::Sha1)
        .toHex()
        .toStdString();
}

// The next line of `text` without its "\n"; nothing when there is no line feed.
std::optional<std::string_view> takeLine(std::string_view& text)
{
    const auto end = text.find('\n');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

} // namespace

CatalogueCache::CatalogueCache(QString path)
    : m_path(std::move(path))
{}

QString CatalogueCache::defaultPath()
{
    return QString::fromStdString(paths::catalogueCache());
}

std::string CatalogueCache::environment()
{
    std::string line(pomvar::version());
    for (const char* name : { "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CURRENT_DESKTOP" })
        line.append("|").append(qEnvironmentVariable(name).toStdString());
    line += '|';
    for (const char* const* language = g_get_language_names(); *language; ++language)
        line.append(*language).append(",");
    line.append("|").append(QLocale().collation().name().toStdString());
    line.append("|").append(QDir::homePath().toStdString());
    // A line of its own in the file.
    for (char& c : line)
        if (c == '\n')
            c = ' ';
    return line;
}

std::optional<CatalogueCache::Catalogue> CatalogueCache::load(const std::string& environment) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    std::string_view text(bytes.constData(), std::size_t(bytes.size()));
    if (!text.starts_with(kMagic))
        return std::nullopt;
    text.remove_prefix(kMagic.size());
    const auto savedEnvironment = takeLine(text);
    const auto checksum = takeLine(text);
    if (!savedEnvironment || *savedEnvironment != environment || !checksum ||
        *checksum != sha1(text) || (!text.empty() && text.back() != '\0'))
        return std::nullopt;
    Catalogue catalogue;
    std::array<std::string_view, kFields> fields;
    std::size_t field = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\0', at);
        fields[field] = text.substr(at, end - at);
        at = end + 1;
        if (++field == kFields) {
            readApp(fields, catalogue);
            field = 0;
        }
    }
    if (field != 0)
        return std::nullopt;
    return catalogue;
}

bool CatalogueCache::save(const std::string& environment, const Catalogue& catalogue) const
{
    if (catalogue.apps.size() != catalogue.entries.size())
        return false;
    std::string fields;
    for (std::size_t i = 0; i < catalogue.apps.size(); ++i) {
        for (const std::string& field : fieldsOf(catalogue.apps[i], catalogue.entries[i]))
            fields.append(field).push_back('\0');
    }
    std::string text(kMagic);
    text.append(environment).append("\n").append(sha1(fields)).append("\n").append(fields);
    return AtomicFile::write(m_path, QByteArrayView(text.data(), qsizetype(text.size())));
}

} // namespace pomvar::srv
