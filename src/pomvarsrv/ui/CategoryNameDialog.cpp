#include "pomvarsrv/ui/CategoryNameDialog.h"

#include "pomvarsrv/model/CategoryName.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

CategoryNameDialog::CategoryNameDialog(const Store& store,
                                       const QString& title,
                                       const QString& current,
                                       QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , m_current(current)
    , m_field(new QLineEdit(current, this))
    , m_problem(new QLabel(this))
{
    setObjectName(QStringLiteral("categoryNameDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    setAccessibleName(title);
    auto* label = new QLabel(tr("Category name"), this);
    label->setBuddy(m_field);
    m_field->setObjectName(QStringLiteral("categoryNameField"));
    m_field->setAccessibleName(label->text());
    m_field->selectAll();
    m_problem->setObjectName(QStringLiteral("categoryNameProblem"));
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText); // it quotes the name typed
    m_problem->setStyleSheet(QStringLiteral("color: #c01c28"));
    m_problem->hide();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(current.isEmpty() ? tr("Create") : tr("Rename"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_field, &QLineEdit::textEdited, this, [this] { showProblem({}); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_field);
    layout->addWidget(m_problem);
    layout->addWidget(buttons);
    setMinimumWidth(360);
}

void CategoryNameDialog::accept()
{
    const QString name = m_field->text().trimmed();
    if (const QString problem = CategoryName::problem(name, m_store, m_current);
        !problem.isEmpty()) {
        showProblem(problem);
        m_field->setFocus();
        m_field->selectAll();
        return;
    }
    if (name != m_current)
        Q_EMIT nameChosen(name);
    QDialog::accept();
}

void CategoryNameDialog::showProblem(const QString& problem)
{
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    m_field->setAccessibleDescription(problem);
}

} // namespace pomvar::srv
