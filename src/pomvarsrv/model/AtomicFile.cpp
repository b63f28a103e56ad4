#include "pomvarsrv/model/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

namespace pomvar::srv {

bool AtomicFile::write(const QString& path, QByteArrayView bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(bytes.data(), bytes.size()) == bytes.size() && file.commit();
}

int AtomicFile::removeDebris(const QString& path)
{
    // QSaveFile writes beside the file as "<name>.XXXXXX" and renames that over it at commit.
    const QFileInfo file(path);
    const QRegularExpression temporary(QRegularExpression::anchoredPattern(
        QRegularExpression::escape(file.fileName()) + QStringLiteral("\\.[A-Za-z0-9]{6}")));
    int removed = 0;
    const QDir dir = file.dir();
    for (const QString& name : dir.entryList({ file.fileName() + QStringLiteral(".*") },
                                             QDir::Files | QDir::Hidden | QDir::System)) {
        if (temporary.match(name).hasMatch() && QFile::remove(dir.filePath(name)))
            ++removed;
    }
    return removed;
}

} // namespace pomvar::srv
