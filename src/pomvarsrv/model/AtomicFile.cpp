#include "pomvarsrv/model/AtomicFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace pomvar::srv {

bool AtomicFile::write(const QString& path, QByteArrayView bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(bytes.data(), bytes.size()) == bytes.size() && file.commit();
}

} // namespace pomvar::srv
