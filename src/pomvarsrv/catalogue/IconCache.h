#pragma once

#include <QSet>
#include <QString>

namespace pomvar::srv {

// PNG renders of icon files at 24 and 48 pixels, under $XDG_CACHE_HOME/pomvar/icons. A render
// is named after its source's path, size and modification time, so a changed source gets new
// files and an unchanged one is never rendered twice. Rendering works on any thread.
class IconCache
{
public:
    static constexpr int kSize = 24;
    static constexpr int kSize2x = 48;

    struct Files
    {
        QString path;
        QString path2x;
        bool isValid() const { return !path.isEmpty(); }
    };

    IconCache();
    explicit IconCache(QString dir);

    const QString& dir() const { return m_dir; }
    static QString defaultDir();

    // The renders of `source` when both exist; invalid otherwise.
    Files cached(const QString& source) const;
    // Renders `source` (PNG, SVG, XPM...) at both sizes; invalid when it cannot be read.
    Files render(const QString& source) const;
    // The generic application icon, from the theme's file when given, else drawn; always valid
    // unless the cache folder cannot be written.
    Files generic(const QString& themeFile) const;
    // Removes every render.
    void clear() const;
    // Removes the renders not named in `inUse` (file paths): those of changed sources and of
    // apps that are gone, so the cache holds what the menus show and nothing more.
    int prune(const QSet<QString>& inUse) const;

private:
    Files namesFor(const QString& source) const;

    QString m_dir;
};

} // namespace pomvar::srv
