#pragma once

#include <QColor>
#include <QSize>
#include <QString>
#include <QTemporaryDir>

namespace pomvar::test {

// Small icon files on disk, as the runtime server hands them out: a square one, a wide one
// (twice as wide as high) and a tall "2x" one (three times as wide as high) whose shape tells
// which file a row drew.
class IconFiles
{
public:
    IconFiles();

    QString square() const { return m_square; }
    QString wide() const { return m_wide; }
    QString wide3() const { return m_wide3; }

private:
    QString write(const QString& name, QSize size, QColor colour);

    QTemporaryDir m_dir;
    QString m_square;
    QString m_wide;
    QString m_wide3;
};

} // namespace pomvar::test
