#include "IconFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

namespace pomvar::test {

IconFiles::IconFiles()
{
    const std::tuple<QString, int, QRgb> files[] = { { square(), 32, 0xffd94a3d },
                                                     { wide(), 64, 0xff3d9a4a },
                                                     { wide3(), 96, 0xff4a3dd9 } };
    for (const auto& [path, width, colour] : files)
        writePng(path, width, 32, QColor::fromRgba(colour));
}

bool IconFiles::writePng(const QString& path, int w, int h, QColor colour)
{
    QImage image(w, h, QImage::Format_ARGB32);
    image.fill(colour);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && image.save(path, "PNG");
}

} // namespace pomvar::test
