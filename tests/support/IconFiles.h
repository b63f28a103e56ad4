#pragma once

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

private:
    QTemporaryDir m_dir;
};

} // namespace pomvar::test
