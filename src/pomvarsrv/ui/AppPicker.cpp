#include "pomvarsrv/ui/AppPicker.h"

#include "pomvarsrv/ui/OrganizerListModel.h"
#include "pomvarsrv/ui/OrganizerListView.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

AppPicker::AppPicker(const InstalledApps& apps,
                     Filter filter,
                     std::set<std::string> excluded,
                     const QString& title,
                     const QString& action,
                     QWidget* parent)
    : QDialog(parent)
    , m_apps(apps)
    , m_filter(std::move(filter))
    , m_excluded(std::move(excluded))
    , m_field(new QLineEdit(this))
    , m_model(new OrganizerListModel(OrganizerListModel::Kind::apps, false, this))
    , m_list(new OrganizerListView(m_model, tr("Apps"), this))
{
    setObjectName(QStringLiteral("appPicker"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    setAccessibleName(title);
    m_field->setObjectName(QStringLiteral("appPickerFilter"));
    //: The field that narrows the list to the apps matching what is typed.
    m_field->setPlaceholderText(tr("Filter"));
    m_field->setAccessibleName(m_field->placeholderText());
    m_field->setClearButtonEnabled(false);
    m_field->installEventFilter(this);
    m_list->setObjectName(QStringLiteral("appPickerList"));
    // Its rows are copied where they are dropped; its model takes no drops.
    m_list->setDefaultDropAction(Qt::CopyAction);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_action = buttons->button(QDialogButtonBox::Ok);
    m_action->setObjectName(QStringLiteral("appPickerAction"));
    m_action->setText(action);
    m_action->setAutoDefault(false);
    m_action->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_field, &QLineEdit::textChanged, this, &AppPicker::refresh);
    connect(m_list, &QListView::doubleClicked, this, &QDialog::accept);
    connect(m_list->selectionModel(),
            &QItemSelectionModel::selectionChanged,
            this,
            &AppPicker::noteSelection);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_field);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(380, 480);
    refresh();
}

void AppPicker::refresh()
{
    std::vector<std::string> keys;
    for (std::string& key : m_filter(m_field->text())) {
        if (!m_excluded.count(key))
            keys.push_back(std::move(key));
    }
    m_refreshing = true;
    m_model->setApps(keys, m_apps);
    m_list->selectKeys({ m_chosen.begin(), m_chosen.end() });
    m_refreshing = false;
    m_action->setEnabled(!m_chosen.empty());
}

void AppPicker::noteSelection()
{
    if (m_refreshing)
        return;
    const QStringList selected = m_list->selectedKeys(false);
    for (const QString& key : m_model->keys()) {
        if (selected.contains(key))
            m_chosen.insert(key);
        else
            m_chosen.erase(key);
    }
    m_action->setEnabled(!m_chosen.empty());
}

void AppPicker::accept()
{
    if (m_chosen.empty())
        return;
    // In menu order, whatever the filter shows now.
    QStringList keys;
    for (const std::string& key : m_filter({})) {
        if (m_chosen.count(QString::fromStdString(key)))
            keys << QString::fromStdString(key);
    }
    Q_EMIT chosen(keys);
    QDialog::accept();
}

bool AppPicker::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_field && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_PageDown) {
            m_list->setFocus();
            if (m_list->selectedKeys(false).isEmpty() && m_model->rowCount() > 0)
                m_list->selectKeys({ m_model->keyAt(0) });
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace pomvar::srv
