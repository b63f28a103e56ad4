#include "ui/MenuListView.h"

#include "model/MenuList.h"
#include "ui/PanelColors.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace pomvar {

MenuListView::MenuListView(Pomvar menu,
                           MenuList& model,
                           MenuRowDelegate::PrefsSource prefs,
                           QWidget* parent)
    : QTreeView(parent)
    , m_menu(menu)
    , m_model(model)
    , m_delegate(new MenuRowDelegate(menu, std::move(prefs), this))
{
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);
    setItemsExpandable(true);
    setAllColumnsShowFocus(true);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAutoFillBackground(false);
    setAutoFillBackground(false);
    // A thin scroll bar without arrows, in the panel's secondary colour. The view is built
    // anew at each opening of the panel, so it follows a change of appearance then.
    const QString handle = PanelColors::secondary(palette(), 0.6).name(QColor::HexArgb);
    const QString handleHovered = PanelColors::secondary(palette(), 1.0).name(QColor::HexArgb);
    setStyleSheet(QStringLiteral(
                      "QTreeView { background: transparent; border: none; }"
                      "QScrollBar:vertical { background: transparent; width: 10px; margin: 2px 0; }"
                      "QScrollBar::handle:vertical { background: %1; min-height: 32px;"
                      " border-radius: 3px; margin: 0 2px; }"
                      "QScrollBar::handle:vertical:hover, QScrollBar::handle:vertical:pressed {"
                      " background: %2; }"
                      "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical {"
                      " height: 0; border: none; background: transparent; }"
                      "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical {"
                      " background: transparent; }")
                      .arg(handle, handleHovered));
    setItemDelegate(m_delegate);
    setModel(&m_model);
    header()->setStretchLastSection(true);
    verticalScrollBar()->setSingleStep(12);
}

void MenuListView::updateRowHeight()
{
    // The delegate's size hint is uniform; a layout pass picks up the new height.
    scheduleDelayedItemsLayout();
    viewport()->update();
}

void MenuListView::setDropMarker(const QRect& rect)
{
    if (rect == m_dropMarker)
        return;
    m_dropMarker = rect;
    viewport()->update();
}

void MenuListView::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    if (m_dropMarker.isNull())
        return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
    if (m_dropMarker.height() <= kDropLine) {
        painter.fillRect(m_dropMarker, colour);
        return;
    }
    painter.setPen(QPen(colour, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(m_dropMarker).adjusted(1, 1, -1, -1), 4, 4);
}

void MenuListView::activate(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    if (index.data(MenuList::IsCategoryRole).toBool()) {
        Q_EMIT categoryToggled(index, !isExpanded(index));
        return;
    }
    Q_EMIT appActivated(index);
}

void MenuListView::highlight(const QModelIndex& index)
{
    if (!index.isValid()) {
        selectionModel()->clearSelection();
        return;
    }
    if (selectionModel()->isSelected(index))
        return;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void MenuListView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton) {
        m_pressed = index;
        m_pressedAt = event->position().toPoint();
    }
    highlight(index);
    setFocus(Qt::MouseFocusReason);
    event->accept();
}

void MenuListView::mouseReleaseEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const QPersistentModelIndex pressed = m_pressed;
    m_pressed = QPersistentModelIndex();
    event->accept();
    if (event->button() == Qt::LeftButton && index.isValid() && index == pressed)
        activate(index);
}

void MenuListView::mouseDoubleClickEvent(QMouseEvent* event)
{
    // A second click is a click of its own: a category opens and closes again.
    mousePressEvent(event);
}

void MenuListView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    if (event->buttons() == Qt::NoButton)
        highlight(indexAt(at));
    if (event->buttons() == Qt::LeftButton && m_pressed.isValid() &&
        (at - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        const QModelIndex dragged = m_pressed;
        // The drag has the pointer from now on: no click follows.
        m_pressed = QPersistentModelIndex();
        Q_EMIT dragStarted(dragged,
                           m_pressedAt - visualRect(dragged).topLeft(),
                           event->globalPosition().toPoint());
    }
    event->accept();
}

void MenuListView::leaveEvent(QEvent* event)
{
    // The pointer leaves for the row's own context menu: the row stays highlighted meanwhile.
    if (!qobject_cast<QMenu*>(QApplication::activePopupWidget()))
        highlight({});
    QTreeView::leaveEvent(event);
}

void MenuListView::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex current = currentIndex();
    const bool category = current.isValid() && current.data(MenuList::IsCategoryRole).toBool();
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (current.isValid() && selectionModel()->isSelected(current))
                activate(current);
            event->accept();
            return;
        case Qt::Key_Left:
            if (category && isExpanded(current))
                Q_EMIT categoryToggled(current, false);
            else if (current.parent().isValid())
                highlight(current.parent());
            event->accept();
            return;
        case Qt::Key_Right:
            if (category && !isExpanded(current))
                Q_EMIT categoryToggled(current, true);
            else if (category && m_model.rowCount(current) > 0)
                highlight(m_model.index(0, 0, current));
            event->accept();
            return;
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
            if (!current.isValid() && m_model.rowCount() > 0) {
                const int row = event->key() == Qt::Key_Up || event->key() == Qt::Key_End
                                    ? m_model.rowCount() - 1
                                    : 0;
                highlight(m_model.index(row, 0));
                scrollTo(currentIndex());
                event->accept();
                return;
            }
            QTreeView::keyPressEvent(event);
            if (currentIndex().isValid())
                selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
            return;
        default:
            // Everything else (Escape included) is the panel's.
            event->ignore();
            return;
    }
}

void MenuListView::contextMenuEvent(QContextMenuEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    event->accept();
    if (!index.isValid())
        return;
    highlight(index);
    Q_EMIT rowContextMenuRequested(index, event->globalPos());
}

} // namespace pomvar

namespace pomvar {

void MenuListView::drawRow(QPainter* painter,
                           const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    QStyleOptionViewItem row = option;
    row.rect = QRect(0, option.rect.top(), viewport()->width(), option.rect.height());
    row.state &= ~(QStyle::State_HasFocus | QStyle::State_Selected | QStyle::State_MouseOver);
    if (selectionModel()->isSelected(index))
        row.state |= QStyle::State_Selected;
    m_delegate->paint(painter, row, index);
}

} // namespace pomvar
