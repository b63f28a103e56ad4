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
    // Removes what writes of `path` cut short by a kill left beside it (the unfinished
    // temporary files); how many. Only the one process that writes `path` may call it.
    static int removeDebris(const QString& path);
};

} // namespace pomvar::srv
