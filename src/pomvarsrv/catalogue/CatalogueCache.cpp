// GIO before Qt: its headers use names that Qt's keywords would break.
#include "wire/UserPaths.h"

#include <glib.h>

#include "pomvarsrv/catalogue/CatalogueCache.h"

#include "wire/Version.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>

namespace pomvar::srv {

namespace {

constexpr char kMagic[] = "pomvar-catalogue";
constexpr int kMagicSize = sizeof kMagic - 1;
// Raised whenever the records change: a file of another format is not read.
constexpr quint32 kFormat = 3;
constexpr auto kStreamVersion = QDataStream::Qt_6_4;

QByteArray bytes(const std::string& text)
{
    return QByteArray::fromStdString(text);
}

void writeRecord(QDataStream& out, const AppEntry& app, const DesktopApp& entry)
{
    out << bytes(app.key) << bytes(app.name) << bytes(app.bundleId) << bytes(app.iconPath)
        << bytes(app.iconPath2x) << entry.icon << entry.untranslatedName << entry.genericName
        << entry.keywords << entry.comment << entry.program;
}

bool readRecord(QDataStream& in, CatalogueCache::Catalogue& into)
{
    QByteArray key, name, bundleId, iconPath, iconPath2x;
    DesktopApp entry;
    in >> key >> name >> bundleId >> iconPath >> iconPath2x >> entry.icon >>
        entry.untranslatedName >> entry.genericName >> entry.keywords >> entry.comment >>
        entry.program;
    if (in.status() != QDataStream::Ok)
        return false;
    entry.id = key.toStdString();
    entry.name = name.toStdString();
    into.entries.push_back(std::move(entry));
    into.apps.push_back(AppEntry{ key.toStdString(),
                                  name.toStdString(),
                                  bundleId.toStdString(),
                                  iconPath.toStdString(),
                                  iconPath2x.toStdString() });
    return true;
}

// Calls `use` with each app's record in turn.
template <typename Use>
bool forEachRecord(const std::vector<AppEntry>& apps,
                   const std::vector<DesktopApp>& entries,
                   const Use& use)
{
    if (apps.size() != entries.size())
        return false;
    for (std::size_t i = 0; i < apps.size(); ++i)
        if (!use(CatalogueCache::record(apps[i], entries[i])))
            return false;
    return true;
}

// The SHA-1 of what is left of `file`, read a block at a time.
QByteArray sha1OfRest(QFile& file)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return hash.addData(&file) ? hash.result() : QByteArray();
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
    return line;
}

QByteArray CatalogueCache::record(const AppEntry& app, const DesktopApp& entry)
{
    QByteArray record;
    QDataStream out(&record, QIODevice::WriteOnly);
    out.setVersion(kStreamVersion);
    writeRecord(out, app, entry);
    return record;
}

std::optional<CatalogueCache::Catalogue> CatalogueCache::load(const std::string& environment) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QDataStream in(&file);
    in.setVersion(kStreamVersion);
    char magic[kMagicSize];
    quint32 format = 0;
    QByteArray savedEnvironment, checksum;
    if (in.readRawData(magic, kMagicSize) != kMagicSize ||
        QByteArrayView(magic, kMagicSize) != QByteArrayView(kMagic))
        return std::nullopt;
    in >> format;
    if (format != kFormat)
        return std::nullopt;
    in >> savedEnvironment >> checksum;
    const qint64 records = file.pos();
    if (in.status() != QDataStream::Ok || savedEnvironment != bytes(environment) ||
        checksum != sha1OfRest(file) || !file.seek(records))
        return std::nullopt;
    Catalogue catalogue;
    while (!in.atEnd())
        if (!readRecord(in, catalogue))
            return std::nullopt;
    return catalogue;
}

bool CatalogueCache::save(const std::string& environment,
                          const std::vector<AppEntry>& apps,
                          const std::vector<DesktopApp>& entries) const
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!forEachRecord(apps, entries, [&hash](const QByteArray& record) {
            hash.addData(record);
            return true;
        }))
        return false;
    const QByteArray checksum = hash.result();
    // Written as it is made, and replaced whole or not at all.
    QDir().mkpath(QFileInfo(m_path).path());
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream out(&file);
    out.setVersion(kStreamVersion);
    out.writeRawData(kMagic, kMagicSize);
    out << kFormat << bytes(environment) << checksum;
    const bool written = forEachRecord(apps, entries, [&file](const QByteArray& record) {
        return file.write(record) == record.size();
    });
    return written && out.status() == QDataStream::Ok && file.commit();
}

} // namespace pomvar::srv
