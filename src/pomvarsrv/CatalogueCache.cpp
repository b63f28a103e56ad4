// GIO before Qt: its headers use names that Qt's keywords would break.
#include <glib.h>

#include "CatalogueCache.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <QStandardPaths>

namespace pomvar::srv {

namespace {

constexpr std::string_view kMagic = "pomvar-catalogue 1\n";
constexpr std::size_t kFields = 5;
constexpr std::string AppEntry::*kFieldOf[kFields] = { &AppEntry::key,
                                                       &AppEntry::name,
                                                       &AppEntry::bundleId,
                                                       &AppEntry::iconPath,
                                                       &AppEntry::iconPath2x };

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
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/pomvar/catalogue");
}

std::string CatalogueCache::environment()
{
    std::string line = POMVAR_VERSION;
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

std::optional<std::vector<AppEntry>> CatalogueCache::load(const std::string& environment) const
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
    std::vector<AppEntry> apps;
    std::size_t field = 0;
    AppEntry app;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\0', at);
        app.*kFieldOf[field] = std::string(text.substr(at, end - at));
        at = end + 1;
        if (++field == kFields) {
            apps.push_back(std::move(app));
            app = {};
            field = 0;
        }
    }
    if (field != 0)
        return std::nullopt;
    return apps;
}

bool CatalogueCache::save(const std::string& environment, const std::vector<AppEntry>& apps) const
{
    std::string fields;
    for (const AppEntry& app : apps) {
        for (const auto member : kFieldOf)
            fields.append(app.*member).push_back('\0');
    }
    std::string text(kMagic);
    text.append(environment).append("\n").append(sha1(fields)).append("\n").append(fields);
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(text.data(), qint64(text.size())) == qint64(text.size()) && file.commit();
}

} // namespace pomvar::srv
