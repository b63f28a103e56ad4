#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

namespace pomvar::srv {

// An app's desktop entry as the user edits it. The edit is the user's own copy of the entry in
// $XDG_DATA_HOME/applications under the same desktop file id, which takes precedence over the
// installed one for every desktop, as the Desktop Entry rules intend. The copy keeps every key
// it does not edit (actions, translations of other keys, comments); an edited name or comment
// replaces its translations, so that it shows in every language. Reverting removes the copy.
// GIO's monitor of the applications folders tells the catalogue about both at once.
class EditedEntry
{
    Q_DECLARE_TR_FUNCTIONS(pomvar::srv::EditedEntry)

public:
    struct Fields
    {
        QString name;
        QString comment;
        QString icon; // an icon name of the theme or an absolute file path; empty for none
        QString command;
        QStringList categories;

        bool operator==(const Fields&) const = default;
    };

    // The entry installed under that id now, as it shows; nothing when there is none.
    static std::optional<EditedEntry> read(const QString& desktopId);

    const QString& desktopId() const { return m_id; }
    const Fields& fields() const { return m_fields; }
    // The file an edit writes: the user's own copy.
    const QString& copyPath() const { return m_copy; }
    // The user's copy exists and an installed entry stands behind it.
    bool canRevert() const;

    // Writes the user's copy with these fields, atomically; false when it cannot be written.
    bool save(const Fields& fields) const;
    // Removes the user's copy; false when that fails.
    bool revert() const;

    // What is wrong with a command line for an entry's Exec key; empty when it is fine.
    static QString commandProblem(const QString& command);

private:
    QString m_id;
    QString m_path; // the file the entry is read from now
    QString m_copy;
    QString m_original; // the installed entry behind the copy; empty when there is none
    Fields m_fields;
};

} // namespace pomvar::srv
