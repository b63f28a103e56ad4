#include "IconFiles.h"

#include "TestDesktop.h"

namespace pomvar::test {

IconFiles::IconFiles()
{
    const std::tuple<QString, int, QRgb> files[] = { { square(), 32, 0xffd94a3d },
                                                     { wide(), 64, 0xff3d9a4a },
                                                     { wide3(), 96, 0xff4a3dd9 } };
    for (const auto& [path, width, colour] : files)
        TestDesktop::writePng(path, width, 32, QColor::fromRgba(colour));
}

} // namespace pomvar::test
