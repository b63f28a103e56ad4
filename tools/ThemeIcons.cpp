#include "ThemeIcons.h"

#include <QDir>
#include <QFileInfo>

namespace pomvar::test {

static QString at(int size, const QString& fileName)
{
    return QStringLiteral("/usr/share/icons/Adwaita/%1x%1/legacy/%2").arg(size).arg(fileName);
}

std::vector<ThemeIcons::Icon> ThemeIcons::all()
{
    std::vector<Icon> icons;
    const QDir dir(at(24, QString()));
    for (const QString& name : dir.entryList({ QStringLiteral("*.png") }, QDir::Files, QDir::Name))
        // The "symbolic" ones are monochrome glyphs, not app icons.
        if (!name.contains(QStringLiteral("symbolic")) && QFileInfo::exists(at(48, name)))
            icons.push_back({ dir.filePath(name), at(48, name) });
    return icons;
}

std::optional<ThemeIcons::Icon> ThemeIcons::named(const QString& name)
{
    const Icon icon{ at(24, name + QStringLiteral(".png")), at(48, name + QStringLiteral(".png")) };
    if (!QFileInfo::exists(icon.path) || !QFileInfo::exists(icon.path2x))
        return std::nullopt;
    return icon;
}

} // namespace pomvar::test
