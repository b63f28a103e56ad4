#include "pomvarsrv/ui/AppEditDialog.h"

#include "pomvarsrv/ui/IconNameModel.h"
#include "pomvarsrv/ui/IconPicker.h"
#include "pomvarsrv/ui/ProblemLabel.h"
#include "pomvarsrv/ui/UserNotice.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

namespace {

struct MainCategory
{
    const char* freedesktop;
    const char* label;
};

// The freedesktop main categories, as the welcome names them.
const MainCategory kMainCategories[] = {
    { "AudioVideo", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Sound & Video") },
    { "Audio", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Audio") },
    { "Video", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Video") },
    { "Development", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Programming") },
    { "Education", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Education") },
    { "Game", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Games") },
    { "Graphics", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Graphics") },
    { "Network", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Internet") },
    { "Office", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Office") },
    { "Science", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Science") },
    { "Settings", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Settings") },
    { "System", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "System") },
    { "Utility", QT_TRANSLATE_NOOP("pomvar::srv::AppEditDialog", "Accessories") },
};

constexpr int kIconSide = 24;

QLineEdit* field(const QString& text, const char* objectName, QWidget* parent)
{
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(QString::fromLatin1(objectName));
    return edit;
}

} // namespace

AppEditDialog::AppEditDialog(EditedEntry entry, QWidget* parent)
    : QDialog(parent)
    , m_entry(std::move(entry))
    , m_icons(new IconNameModel(this))
    , m_name(field(m_entry.fields().name, "editName", this))
    , m_comment(field(m_entry.fields().comment, "editComment", this))
    , m_iconShown(new QLabel(this))
    , m_icon(field(m_entry.fields().icon, "editIcon", this))
    , m_command(field(m_entry.fields().command, "editCommand", this))
    , m_problem(new ProblemLabel(QStringLiteral("editProblem"), this))
{
    setObjectName(QStringLiteral("appEditDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    //: %1: the app's name.
    setWindowTitle(tr("Edit \u201c%1\u201d").arg(m_entry.fields().name));
    setAccessibleName(windowTitle());

    auto* form = new QFormLayout;
    const auto addRow = [&](const QString& caption, QWidget* widget, QLayout* row = nullptr) {
        auto* label = new QLabel(caption, this);
        label->setBuddy(widget);
        widget->setAccessibleName(QString(caption).remove(u'&').remove(u':'));
        if (row)
            form->addRow(label, row);
        else
            form->addRow(label, widget);
    };
    addRow(tr("&Name:"), m_name);
    addRow(tr("C&omment:"), m_comment);
    auto* iconRow = new QHBoxLayout;
    m_iconShown->setFixedSize(kIconSide, kIconSide);
    auto* chooseIcon = new QPushButton(tr("C&hoose\u2026"), this);
    chooseIcon->setObjectName(QStringLiteral("editChooseIcon"));
    chooseIcon->setAccessibleName(tr("Choose Icon"));
    chooseIcon->setAutoDefault(false);
    iconRow->addWidget(m_iconShown);
    iconRow->addWidget(m_icon, 1);
    iconRow->addWidget(chooseIcon);
    //: The Icon key: a name of the icon theme or an image file.
    addRow(tr("&Icon:"), m_icon, iconRow);
    //: The command line that starts the app.
    addRow(tr("Co&mmand:"), m_command);

    auto* categories = new QGridLayout;
    const QStringList listed = m_entry.fields().categories;
    m_otherCategories = listed;
    for (const MainCategory& main : kMainCategories) {
        const QString name = QString::fromLatin1(main.freedesktop);
        // An "&" in a label is text, not a mnemonic marker ("Sound & Video").
        auto* box = new QCheckBox(tr(main.label).replace(u'&', QStringLiteral("&&")), this);
        box->setObjectName(QStringLiteral("editCategory") + name);
        box->setToolTip(name);
        box->setChecked(listed.contains(name));
        m_otherCategories.removeAll(name);
        const int at = int(m_mainCategories.size());
        categories->addWidget(box, at / 3, at % 3);
        m_mainCategories.push_back(box);
    }
    auto* categoriesBox = new QVBoxLayout;
    categoriesBox->addLayout(categories);
    if (!m_otherCategories.isEmpty()) {
        //: %1: the entry's other freedesktop categories, which stay as they are.
        auto* others =
            new QLabel(tr("Also listed under: %1").arg(m_otherCategories.join(u", ")), this);
        others->setTextFormat(Qt::PlainText);
        others->setWordWrap(true);
        categoriesBox->addWidget(others);
    }
    //: The freedesktop categories under which desktops list the app.
    form->addRow(tr("Categories:"), categoriesBox);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    m_revert = buttons->addButton(tr("&Revert to Original"), QDialogButtonBox::ResetRole);
    m_revert->setObjectName(QStringLiteral("editRevert"));
    m_revert->setAccessibleName(tr("Revert to Original"));
    m_revert->setEnabled(m_entry.canRevert());
    m_revert->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_revert, &QPushButton::clicked, this, &AppEditDialog::revert);
    connect(chooseIcon, &QPushButton::clicked, this, &AppEditDialog::chooseIcon);
    connect(m_icon, &QLineEdit::textChanged, this, &AppEditDialog::showIcon);
    for (QLineEdit* each : { m_name, m_command })
        connect(each, &QLineEdit::textEdited, this, [this] { showProblem({}, nullptr); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_problem);
    layout->addWidget(buttons);
    setMinimumWidth(480);
    showIcon();
}

EditedEntry::Fields AppEditDialog::fields() const
{
    EditedEntry::Fields fields{ m_name->text().trimmed(),
                                m_comment->text().trimmed(),
                                m_icon->text().trimmed(),
                                m_command->text().trimmed(),
                                {} };
    // The entry's own order, the main categories unticked left out; those ticked now, last.
    QStringList ticked;
    for (std::size_t i = 0; i < m_mainCategories.size(); ++i) {
        if (m_mainCategories[i]->isChecked())
            ticked << QString::fromLatin1(kMainCategories[i].freedesktop);
    }
    for (const QString& listed : m_entry.fields().categories) {
        if (m_otherCategories.contains(listed) || ticked.removeOne(listed))
            fields.categories << listed;
    }
    fields.categories << ticked;
    return fields;
}

void AppEditDialog::showIcon()
{
    const QIcon icon = m_icons->iconOf(m_icon->text().trimmed());
    m_iconShown->setPixmap(icon.pixmap(kIconSide, kIconSide));
}

void AppEditDialog::chooseIcon()
{
    if (m_picker)
        m_picker->close();
    auto* picker = new IconPicker(m_icons, m_icon->text().trimmed(), this);
    connect(picker, &IconPicker::chosen, m_icon, &QLineEdit::setText);
    m_picker = picker;
    picker->show();
    picker->activateWindow();
}

void AppEditDialog::showProblem(const QString& problem, QLineEdit* field)
{
    m_problem->setProblem(problem);
    for (QLineEdit* each : { m_name, m_command })
        each->setAccessibleDescription(each == field ? problem : QString());
    if (field) {
        field->setFocus();
        field->selectAll();
    }
}

void AppEditDialog::accept()
{
    const EditedEntry::Fields edited = fields();
    if (edited.name.isEmpty())
        return showProblem(tr("An app needs a name."), m_name);
    if (const QString problem = EditedEntry::commandProblem(edited.command); !problem.isEmpty())
        return showProblem(problem, m_command);
    if (edited != m_entry.fields()) {
        if (!m_entry.save(edited)) {
            UserNotice::show(windowTitle(),
                             tr("The entry %1 could not be written.").arg(m_entry.copyPath()));
            return;
        }
        Q_EMIT this->edited(m_entry.desktopId());
    }
    QDialog::accept();
}

void AppEditDialog::revert()
{
    if (!m_entry.revert()) {
        UserNotice::show(windowTitle(),
                         tr("The entry %1 could not be removed.").arg(m_entry.copyPath()));
        return;
    }
    Q_EMIT edited(m_entry.desktopId());
    QDialog::accept();
}

} // namespace pomvar::srv
