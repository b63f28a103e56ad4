#pragma once

#include "pomvarsrv/model/Store.h"

#include <QString>

#include <functional>

namespace pomvar::srv {

// The store's file: $XDG_CONFIG_HOME/pomvar/pomvarsrv.json, mode 0600, replaced atomically on
// every save. Any program of the user can put something else there: a file that is not a
// regular file (a FIFO, whose opening would wait for a writer), a symbolic link, a file larger
// than kMaxSize or one that cannot be read as a store is moved aside as
// pomvarsrv.json.bad-<time>, never opened for long and never overwritten.
class StoreFile
{
public:
    static constexpr qint64 kMaxSize = 16 * 1024 * 1024;

    // What the user must be told of: the server cannot show it from here.
    enum class Problem
    {
        setAside, // `detail`: where the file was put
        notSaved, // `detail`: why; told once, until a save succeeds again
    };
    using ProblemHandler = std::function<void(Problem, const QString& detail)>;

    // The default location, from XDG_CONFIG_HOME (or ~/.config).
    StoreFile();
    explicit StoreFile(QString path);

    const QString& path() const { return m_path; }
    void setProblemHandler(ProblemHandler handler) { m_problem = std::move(handler); }

    // The stored data, or the defaults when there is no file or it is set aside. A file that
    // cannot even be opened is left alone, and nothing is saved over it.
    Store load();
    bool save(const Store& store);

    // Where the last load put the file; empty when it did not.
    const QString& setAsidePath() const { return m_setAsidePath; }

    static QString defaultPath();

private:
    // The file's bytes; nothing when it was set aside or cannot be read.
    std::optional<QByteArray> read();
    void setAside(const QString& reason);
    bool failSave(const QString& why);

    QString m_path;
    QString m_setAsidePath;
    ProblemHandler m_problem;
    // The file exists but could not be read: it is never replaced.
    bool m_keepOff = false;
    // The last save failed, and the user was told.
    bool m_failing = false;
};

} // namespace pomvar::srv
