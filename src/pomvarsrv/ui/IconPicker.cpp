#include "pomvarsrv/ui/IconPicker.h"

#include "pomvarsrv/ui/IconNameModel.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

namespace pomvar::srv {

IconPicker::IconPicker(IconNameModel* icons, const QString& current, QWidget* parent)
    : QDialog(parent)
    , m_field(new QLineEdit(this))
    , m_filtered(new QSortFilterProxyModel(this))
    , m_list(new QListView(this))
{
    setObjectName(QStringLiteral("iconPicker"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Choose Icon"));
    setAccessibleName(windowTitle());
    m_field->setObjectName(QStringLiteral("iconPickerFilter"));
    //: The field that narrows the list to the icon names holding what is typed.
    m_field->setPlaceholderText(tr("Filter"));
    m_field->setAccessibleName(m_field->placeholderText());
    m_field->installEventFilter(this);
    m_filtered->setSourceModel(icons);
    m_filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_list->setObjectName(QStringLiteral("iconPickerList"));
    m_list->setAccessibleName(tr("Icons"));
    m_list->setModel(m_filtered);
    m_list->setUniformItemSizes(true);
    m_list->setIconSize(QSize(24, 24));
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    //: Takes the icon chosen in the list.
    ok->setText(tr("Choose"));
    ok->setEnabled(false);
    QPushButton* file = buttons->addButton(tr("Choose File\u2026"), QDialogButtonBox::ActionRole);
    file->setObjectName(QStringLiteral("iconPickerFile"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(file, &QPushButton::clicked, this, &IconPicker::chooseFile);
    connect(
        m_field, &QLineEdit::textChanged, m_filtered, &QSortFilterProxyModel::setFilterFixedString);
    connect(m_list, &QListView::doubleClicked, this, &QDialog::accept);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this, ok] {
        ok->setEnabled(m_list->selectionModel()->hasSelection());
    });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_field);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(380, 480);
    // The current icon, when it is a name of the theme, is found and chosen.
    if (!QFileInfo(current).isAbsolute()) {
        const QModelIndexList found = m_filtered->match(
            m_filtered->index(0, 0), Qt::DisplayRole, current, 1, Qt::MatchExactly);
        if (!found.isEmpty()) {
            m_list->setCurrentIndex(found.first());
            m_list->scrollTo(found.first(), QAbstractItemView::PositionAtCenter);
        }
    }
}

void IconPicker::accept()
{
    const QModelIndexList selected = m_list->selectionModel()->selectedIndexes();
    if (selected.isEmpty())
        return;
    Q_EMIT chosen(selected.first().data().toString());
    QDialog::accept();
}

void IconPicker::chooseFile()
{
    auto* dialog = new QFileDialog(this, tr("Choose Icon File"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    //: The kinds of files offered as icons.
    dialog->setNameFilter(tr("Images (*.png *.svg *.svgz *.xpm)"));
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) {
        Q_EMIT chosen(file);
        QDialog::accept();
    });
    dialog->open();
}

bool IconPicker::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_field && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((key == Qt::Key_Down || key == Qt::Key_PageDown) && m_filtered->rowCount() > 0) {
            m_list->setFocus();
            if (!m_list->selectionModel()->hasSelection())
                m_list->setCurrentIndex(m_filtered->index(0, 0));
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace pomvar::srv
