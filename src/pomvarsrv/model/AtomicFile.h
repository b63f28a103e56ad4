#pragma once

#include <QByteArrayView>
#include <QString>

namespace pomvar::srv {

// Replaces a file whole or not at all (QSaveFile), its folders made first: a crash or a full disk
// never leaves half a file behind.
class AtomicFile
{
public:
    static bool write(const QString& path, QByteArrayView bytes);
};

} // namespace pomvar::srv
