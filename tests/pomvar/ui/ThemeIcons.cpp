#include "ThemeIcons.h"

#include <QDir>
#include <QFileInfo>

namespace pomvar::test {

namespace {

const QString kRoot = QStringLiteral("/usr/share/icons/Adwaita");

QString at(int size, const QString& fileName)
{
    return QStringLiteral("%1/%2x%2/legacy/%3").arg(kRoot).arg(size).arg(fileName);
}

} // namespace

std::vector<ThemeIcons::Icon> ThemeIcons::all()
{
    std::vector<Icon> icons;
    const QDir dir(QFileInfo(at(24, QString())).path());
    const QStringList names =
        dir.entryList({ QStringLiteral("*.png") }, QDir::Files | QDir::Readable, QDir::Name);
    for (const QString& name : names) {
        // The "symbolic" ones are monochrome glyphs, not app icons.
        if (name.contains(QStringLiteral("symbolic")))
            continue;
        const QString big = at(48, name);
        if (QFileInfo::exists(big))
            icons.push_back({ dir.filePath(name), big });
    }
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
