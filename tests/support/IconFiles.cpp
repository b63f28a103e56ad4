#include "IconFiles.h"

#include <QImage>

namespace pomvar::test {

IconFiles::IconFiles()
{
    const std::tuple<QString, int, QRgb> files[] = { { square(), 32, 0xffd94a3d },
                                                     { wide(), 64, 0xff3d9a4a },
                                                     { wide3(), 96, 0xff4a3dd9 } };
    for (const auto& [path, width, colour] : files) {
        QImage image(width, 32, QImage::Format_ARGB32);
        image.fill(colour);
        image.save(path);
    }
}

} // namespace pomvar::test
