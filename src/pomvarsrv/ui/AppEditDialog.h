#pragma once

#include "pomvarsrv/catalogue/EditedEntry.h"

#include <QDialog>
#include <QPointer>

#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace pomvar::srv {

class IconNameModel;
class ProblemLabel;

// "Edit App": an app's name, comment, icon, command and main categories, saved as the user's own
// copy of its desktop entry (EditedEntry); "Revert to Original" removes that copy. The icon is
// a name of the icon theme or an image file, typed or chosen (IconPicker). The name and the
// command are checked when saving, the reason told inside the dialog. Categories other than the
// main ones are kept as the entry lists them. Not modal; deletes itself when closed.
class AppEditDialog : public QDialog
{
    Q_OBJECT

public:
    AppEditDialog(EditedEntry entry, QWidget* parent = nullptr);

    void accept() override;

Q_SIGNALS:
    // The user's copy was written or removed.
    void edited(const QString& appkey);

private:
    EditedEntry::Fields fields() const;
    void showIcon();
    void chooseIcon();
    void revert();
    void showProblem(const QString& problem, QLineEdit* field);

    EditedEntry m_entry;
    IconNameModel* m_icons;
    QLineEdit* m_name;
    QLineEdit* m_comment;
    QLabel* m_iconShown;
    QLineEdit* m_icon;
    QLineEdit* m_command;
    std::vector<QCheckBox*> m_mainCategories;
    QStringList m_otherCategories;
    ProblemLabel* m_problem;
    QPushButton* m_revert;
    QPointer<QWidget> m_picker;
};

} // namespace pomvar::srv
