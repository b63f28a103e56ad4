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

    QString square() const { return m_square; }
    QString wide() const { return m_wide; }
    QString wide3() const { return m_wide3; }

private:
    QTemporaryDir m_dir;
    QString m_square;
    QString m_wide;
    QString m_wide3;
};

} // namespace pomvar::test
