#pragma once

#include <QDialog>

class QLineEdit;

namespace pomvar::srv {

class ProblemLabel;
class Store;

// Asks for a category's name, new or changed. A name that breaks the rule (CategoryName) is
// refused inside the dialog, which stays open with the reason under the field; the field's
// accessible description carries it too, so that a screen reader says it. Opened with open():
// requests keep being served meanwhile. It deletes itself when closed.
class CategoryNameDialog : public QDialog
{
    Q_OBJECT

public:
    // `current` is the category being renamed; empty for a new one.
    CategoryNameDialog(const Store& store,
                       const QString& title,
                       const QString& current = {},
                       QWidget* parent = nullptr);

    void accept() override;

Q_SIGNALS:
    // The trimmed name, once it is accepted; not emitted when a rename keeps the name as it was.
    void nameChosen(const QString& name);

private:
    void showProblem(const QString& problem);

    const Store& m_store;
    QString m_current;
    QLineEdit* m_field;
    ProblemLabel* m_problem;
};

} // namespace pomvar::srv
