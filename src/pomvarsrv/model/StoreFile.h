#pragma once

#include "pomvarsrv/model/Store.h"

#include <QString>

namespace pomvar::srv {

// The store's file: $XDG_CONFIG_HOME/pomvar/pomvarsrv.json, mode 0600, replaced atomically on
// every save. A file that cannot be read as a store is moved aside, never overwritten.
class StoreFile
{
public:
    // The default location, from XDG_CONFIG_HOME (or ~/.config).
    StoreFile();
    explicit StoreFile(QString path);

    const QString& path() const { return m_path; }

    // The stored data, or the defaults when there is no file or it is unreadable. A file that
    // cannot even be opened is left alone, and nothing is saved over it.
    Store load();
    bool save(const Store& store);

    // Where the last load put an unreadable file; empty when it did not.
    const QString& setAsidePath() const { return m_setAsidePath; }

    static QString defaultPath();

private:
    void setAside(const QString& reason);

    QString m_path;
    QString m_setAsidePath;
    // The file exists but could not be read: it is never replaced.
    bool m_keepOff = false;
};

} // namespace pomvar::srv
