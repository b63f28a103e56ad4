#include "IconFiles.h"

#include <QImage>

namespace pomvar::test {

IconFiles::IconFiles()
{
    const auto write = [this](const char* name, int width, QRgb colour) {
        QImage image(width, 32, QImage::Format_ARGB32);
        image.fill(colour);
        image.save(m_dir.filePath(QString::fromLatin1(name)));
        return m_dir.filePath(QString::fromLatin1(name));
    };
    m_square = write("square.png", 32, 0xffd94a3d);
    m_wide = write("wide.png", 64, 0xff3d9a4a);
    m_wide3 = write("wide3.png", 96, 0xff4a3dd9);
}

} // namespace pomvar::test
