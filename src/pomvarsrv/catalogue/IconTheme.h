#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace pomvar::srv {

// Finds icon files by name the freedesktop way: the user's theme, the themes it inherits,
// then Adwaita and hicolor, then the pixmap folders. Each theme's folders are listed once, so a
// lookup costs no file-system access. Safe to use from any thread once built.
class IconTheme
{
public:
    // `iconDirs`: the base folders holding themes, in precedence order.
    IconTheme(const QString& userTheme, const QStringList& iconDirs, const QStringList& pixmapDirs);

    // The desktop's icon theme setting: Qt's platform theme, else KDE's kdeglobals or GNOME's
    // settings; empty when none is found.
    static QString userThemeName();
    static QStringList defaultIconDirs();
    static QStringList defaultPixmapDirs();

    // The best file for the icon at `size` pixels; empty when there is none.
    QString find(const QString& name, int size) const;
    QStringList themeNames() const;
    // Every icon name the themes hold, sorted, each once.
    QStringList iconNames() const;

private:
    // One file of an icon: its folder and extension (indices in its theme's lists) with the
    // folder's sizes. Paths are made when found, so that an index of thousands of files stays
    // small.
    struct Candidate
    {
        int distanceAt(int size) const;
        int folder = 0;
        int extension = 0;
        int size = 0;
        int minSize = 0;
        int maxSize = 0;
        int threshold = 2;
        enum class Type
        {
            fixed,
            scalable,
            threshold,
        } type = Type::threshold;
    };
    struct Theme
    {
        QString name;
        QStringList folders;    // each ending with '/'
        QStringList extensions; // ".png", ".svg", ...
        QHash<QString, std::vector<Candidate>> icons;
    };

    // Adds the theme and the themes it inherits; false when no folder holds it.
    bool loadTheme(const QString& name, const QStringList& iconDirs);

    std::vector<Theme> m_themes;
    QStringList m_pixmapDirs;
};

} // namespace pomvar::srv
