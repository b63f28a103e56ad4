#include "pomvarsrv/ui/HiddenAppsBox.h"

#include "pomvarsrv/model/ServerModel.h"
#include "pomvarsrv/ui/OrganizerListModel.h"
#include "pomvarsrv/ui/OrganizerListView.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace pomvar::srv {

HiddenAppsBox::HiddenAppsBox(ServerModel& model, QWidget* parent)
    : QGroupBox(tr("Hidden Apps"), parent)
    , m_model(model)
    , m_list(
          new OrganizerListView(new OrganizerListModel(OrganizerListModel::Kind::apps, true, this),
                                title(),
                                this))
    //: Shows the highlighted hidden apps in Pomvar's menus and search again.
    , m_unhide(new QPushButton(tr("Unhide"), this))
{
    m_list->setObjectName(QStringLiteral("hiddenApps"));
    m_unhide->setObjectName(QStringLiteral("unhide"));
    m_unhide->setAutoDefault(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_unhide, 0, Qt::AlignLeft);
    connect(m_unhide, &QPushButton::clicked, this, [this] {
        setHidden(m_list->selectedKeys(false), false);
    });
    connect(m_list, &OrganizerListView::removeRequested, this, [this] {
        setHidden(m_list->selectedKeys(false), false);
    });
    connect(m_list->listModel(),
            &OrganizerListModel::placeRequested,
            this,
            [this](const QStringList& appkeys) { setHidden(appkeys, true); });
    connect(m_list, &QListView::activated, this, [this] {
        Q_EMIT organizeAppRequested(m_list->currentKey());
    });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        m_unhide->setEnabled(!m_list->selectedKeys(false).isEmpty());
    });
    refresh();
}

void HiddenAppsBox::refresh()
{
    const QStringList selected = m_list->selectedKeys(false);
    m_list->listModel()->setApps(m_model.store().hidden(), m_model.apps());
    m_list->selectKeys(selected);
    m_unhide->setEnabled(!m_list->selectedKeys(false).isEmpty());
}

void HiddenAppsBox::setHidden(const QStringList& appkeys, bool hidden)
{
    bool changed = false;
    for (const QString& appkey : appkeys)
        changed |= m_model.setHidden(appkey.toStdString(), hidden);
    if (changed)
        Q_EMIT this->changed();
}

} // namespace pomvar::srv
