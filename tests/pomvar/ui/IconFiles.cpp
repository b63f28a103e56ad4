#include "IconFiles.h"

#include <QImage>

namespace pomvar::test {

IconFiles::IconFiles()
{
    m_square = write(QStringLiteral("square.png"), QSize(32, 32), QColor(0xd9, 0x4a, 0x3d));
    m_wide = write(QStringLiteral("wide.png"), QSize(64, 32), QColor(0x3d, 0x9a, 0x4a));
    m_wide3 = write(QStringLiteral("wide3.png"), QSize(96, 32), QColor(0x4a, 0x3d, 0xd9));
}

QString IconFiles::write(const QString& name, QSize size, QColor colour)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(colour);
    const QString path = m_dir.filePath(name);
    image.save(path);
    return path;
}

} // namespace pomvar::test
