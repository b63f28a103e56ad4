#pragma once

#include <QColor>
#include <QString>
#include <QTemporaryDir>

namespace pomvar::test {

// Small one-colour icon files on disk, as the runtime server hands them out: a square one, a wide
// one (twice as wide as high) and a wider one (three times) whose shape tells which file a row
// drew.
class IconFiles
{
public:
    IconFiles();

    QString square() const { return m_dir.filePath("square.png"); }
    QString wide() const { return m_dir.filePath("wide.png"); }
    QString wide3() const { return m_dir.filePath("wide3.png"); }

    // A PNG of the given size filled with one colour, its folders created.
    static bool writePng(const QString& path, int w, int h, QColor colour = QColor(40, 120, 200));

private:
    QTemporaryDir m_dir;
};

} // namespace pomvar::test
