#include "pomvarsrv/catalogue/IconCache.h"

#include "pomvarsrv/catalogue/CatalogueLog.h"

#include "wire/UserPaths.h"

#include <QColor>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

namespace pomvar::srv {

namespace {

QImage fitted(const QImage& image, int size)
{
    QImage canvas(size, size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    const QImage scaled = image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&canvas);
    painter.drawImage((size - scaled.width()) / 2, (size - scaled.height()) / 2, scaled);
    return canvas;
}

QImage readAt(const QString& source, int size)
{
    QImageReader reader(source);
    const QSize natural = reader.size();
    // Vector images are drawn at the size wanted rather than scaled from their own size.
    if (natural.isValid() && reader.supportsOption(QImageIOHandler::ScaledSize))
        reader.setScaledSize(natural.scaled(size, size, Qt::KeepAspectRatio));
    return reader.read();
}

bool writePng(const QImage& image, const QString& path)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && image.save(&file, "PNG") && file.commit();
}

QImage drawnGeneric(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal margin = size / 8.0;
    const QRectF frame(margin, margin, size - 2 * margin, size - 2 * margin);
    painter.setPen(QPen(QColor(0x55, 0x5a, 0x64), size / 24.0));
    painter.setBrush(QColor(0xe8, 0xea, 0xee));
    painter.drawRoundedRect(frame, size / 8.0, size / 8.0);
    painter.fillRect(QRectF(frame.left(), frame.top(), frame.width(), frame.height() / 4),
                     QColor(0x55, 0x5a, 0x64));
    return image;
}

} // namespace

IconCache::IconCache()
    : IconCache(defaultDir())
{}

IconCache::IconCache(QString dir)
    : m_dir(std::move(dir))
{}

QString IconCache::defaultDir()
{
    return QString::fromStdString(paths::iconCacheDir());
}

IconCache::Files IconCache::namesFor(const QString& source) const
{
    const QFileInfo info(source);
    if (!info.isFile())
        return {};
    const QString identity = source + u'\n' +
                             QString::number(info.lastModified().toMSecsSinceEpoch()) + u'\n' +
                             QString::number(info.size());
    const QString hash = QString::fromLatin1(
        QCryptographicHash::hash(identity.toUtf8(), QCryptographicHash::Sha1).toHex().left(24));
    return { m_dir + u'/' + hash + QStringLiteral("-24.png"),
             m_dir + u'/' + hash + QStringLiteral("-48.png") };
}

IconCache::Files IconCache::cached(const QString& source) const
{
    Files files = namesFor(source);
    if (files.isValid() && QFileInfo::exists(files.path) && QFileInfo::exists(files.path2x))
        return files;
    return {};
}

IconCache::Files IconCache::render(const QString& source) const
{
    const Files files = namesFor(source);
    if (!files.isValid())
        return {};
    QDir().mkpath(m_dir);
    const QImage small = readAt(source, kSize);
    const QImage large = readAt(source, kSize2x);
    if (small.isNull() || large.isNull()) {
        qCInfo(lcCatalogue) << "cannot read the icon" << source;
        return {};
    }
    if (!writePng(fitted(small, kSize), files.path) ||
        !writePng(fitted(large, kSize2x), files.path2x)) {
        qCWarning(lcCatalogue) << "cannot write icons under" << m_dir;
        return {};
    }
    return files;
}

IconCache::Files IconCache::generic(const QString& themeFile) const
{
    if (!themeFile.isEmpty()) {
        if (Files files = cached(themeFile); files.isValid())
            return files;
        if (Files files = render(themeFile); files.isValid())
            return files;
    }
    const Files files{ m_dir + QStringLiteral("/generic-24.png"),
                       m_dir + QStringLiteral("/generic-48.png") };
    if (QFileInfo::exists(files.path) && QFileInfo::exists(files.path2x))
        return files;
    QDir().mkpath(m_dir);
    if (!writePng(drawnGeneric(kSize), files.path) ||
        !writePng(drawnGeneric(kSize2x), files.path2x)) {
        qCWarning(lcCatalogue) << "cannot write icons under" << m_dir;
        return {};
    }
    return files;
}

void IconCache::clear() const
{
    QDir(m_dir).removeRecursively();
}

int IconCache::prune(const QSet<QString>& inUse) const
{
    int removed = 0;
    const QDir dir(m_dir);
    for (const QString& name : dir.entryList({ QStringLiteral("*.png") }, QDir::Files)) {
        const QString path = dir.filePath(name);
        if (!inUse.contains(path) && QFile::remove(path))
            ++removed;
    }
    return removed;
}

} // namespace pomvar::srv
