#include "pomvarsrv/ui/OrganizerListView.h"

#include "pomvarsrv/ui/OrganizerListModel.h"

#include <QKeyEvent>

#include <algorithm>

namespace pomvar::srv {

OrganizerListView::OrganizerListView(OrganizerListModel* model,
                                     const QString& name,
                                     QWidget* parent)
    : QListView(parent)
    , m_model(model)
{
    setModel(model);
    setAccessibleName(name);
    setIconSize(QSize(24, 24));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
}

QStringList OrganizerListView::selectedKeys(bool orCurrent) const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty() && orCurrent && currentIndex().isValid())
        rows << currentIndex();
    std::sort(rows.begin(), rows.end());
    QStringList keys;
    for (const QModelIndex& index : rows)
        keys << m_model->keyAt(index.row());
    return keys;
}

QString OrganizerListView::currentKey() const
{
    return m_model->keyAt(currentIndex().row());
}

void OrganizerListView::selectKeys(const QStringList& keys, const QString& current)
{
    QItemSelection selection;
    for (const QString& key : keys) {
        if (const int row = m_model->rowOf(key); row >= 0)
            selection.select(m_model->index(row), m_model->index(row));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    int row = m_model->rowOf(current);
    if (row < 0 && !selection.isEmpty())
        row = selection.indexes().constFirst().row();
    // Nothing chosen: the first row, if any.
    const QModelIndex index = m_model->index(std::max(row, 0));
    if (!index.isValid())
        return;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    scrollTo(index);
}

void OrganizerListView::keyPressEvent(QKeyEvent* event)
{
    const bool alt = event->modifiers() == Qt::AltModifier;
    if (alt && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        Q_EMIT moveRequested(event->key() == Qt::Key_Down);
        return;
    }
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
        Q_EMIT removeRequested();
        return;
    }
    QListView::keyPressEvent(event);
}

} // namespace pomvar::srv
