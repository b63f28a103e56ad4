#include "ui/PanelDrag.h"

#include "model/PomvarViewModel.h"
#include "model/UserDefaults.h"
#include "ui/MenuListView.h"
#include "ui/UiLog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

namespace pomvar {

namespace {

constexpr qreal kImageOpacity = 0.8;

bool contains(const QWidget* widget, const QPoint& global)
{
    return widget->isVisible() && widget->rect().contains(widget->mapFromGlobal(global));
}

} // namespace

PanelDrag::PanelDrag(PomvarViewModel& vm,
                     QWidget* panel,
                     QWidget* myAppsSelector,
                     QWidget* myAppsPage,
                     MenuListView* myApps,
                     std::function<void()> showMyApps,
                     QObject* parent)
    : QObject(parent)
    , m_vm(vm)
    , m_panel(panel)
    , m_myAppsSelector(myAppsSelector)
    , m_myAppsPage(myAppsPage)
    , m_myApps(myApps)
    , m_showMyApps(std::move(showMyApps))
{}

PanelDrag::~PanelDrag()
{
    finish();
}

void PanelDrag::start(MenuListView* source,
                      const QModelIndex& index,
                      const QPoint& hotSpot,
                      const QPoint& global)
{
    if (m_active || !index.isValid())
        return;
    m_item = source->menuList().item(index);
    m_hotSpot = hotSpot;
    m_active = true;
    trace(lcUi(), concat("PanelDrag.start(): dragging '", m_item.id, "'"));
    // The row as it is drawn now, highlighted, a little transparent.
    const QRect row = source->visualRect(index);
    const QPixmap drawn =
        source->viewport()->grab(QRect(0, row.top(), source->viewport()->width(), row.height()));
    QPixmap image(drawn.size());
    image.setDevicePixelRatio(drawn.devicePixelRatio());
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setOpacity(kImageOpacity);
        painter.drawPixmap(0, 0, drawn);
    }
    m_image = new QLabel(m_panel);
    m_image->setObjectName(QStringLiteral("draggedRow"));
    m_image->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_image->setPixmap(image);
    m_image->resize(image.deviceIndependentSize().toSize());
    m_image->show();
    m_image->raise();
    qApp->installEventFilter(this);
    move(global);
}

bool PanelDrag::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_active || !watched->isWidgetType())
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::MouseMove:
            move(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        case QEvent::MouseButtonRelease:
            drop(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu:
            return true;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
                finish();
            return true;
        case QEvent::Hide:
            if (watched == m_panel->window())
                finish();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

std::optional<MyAppsDrop> PanelDrag::target(const QPoint& global) const
{
    if (contains(m_myAppsSelector, global) || contains(m_myAppsPage, global)) {
        QModelIndex row;
        bool lowerHalf = false;
        if (contains(m_myApps, global)) {
            const QPoint at = m_myApps->viewport()->mapFromGlobal(global);
            row = m_myApps->indexAt(at);
            const QRect rect = m_myApps->visualRect(row);
            lowerHalf = at.y() >= rect.center().y();
        }
        return MyAppsDrop::at(m_myApps->menuList(), row, lowerHalf, m_item);
    }
    return std::nullopt;
}

QRect PanelDrag::markerRect(const MyAppsDrop& drop) const
{
    if (!drop.markerRow.isValid())
        return {};
    QModelIndex row = drop.markerRow;
    // After an open category: after its last app.
    const int apps = m_myApps->menuList().rowCount(row);
    if (drop.edge == MyAppsDrop::Edge::below && apps > 0 && m_myApps->isExpanded(row))
        row = m_myApps->menuList().index(apps - 1, 0, row);
    QRect rect = m_myApps->visualRect(row);
    rect.setLeft(0);
    rect.setRight(m_myApps->viewport()->width() - 1);
    const int line = MenuListView::kDropLine;
    if (drop.edge == MyAppsDrop::Edge::above)
        return QRect(rect.left(), rect.top() - line / 2, rect.width(), line);
    if (drop.edge == MyAppsDrop::Edge::below)
        return QRect(rect.left(), rect.bottom() + 1 - line / 2, rect.width(), line);
    return rect;
}

void PanelDrag::move(const QPoint& global)
{
    if (m_image)
        m_image->move(m_panel->mapFromGlobal(global) - m_hotSpot);
    if (contains(m_myAppsSelector, global) && !m_myAppsPage->isVisible())
        m_showMyApps();
    const auto drop = target(global);
    m_myApps->setDropMarker(drop ? markerRect(*drop) : QRect());
}

void PanelDrag::drop(const QPoint& global)
{
    const auto where = target(global);
    finish();
    if (!where)
        return;
    trace(lcUi(), concat("PanelDrag.drop(): Sending the drop of '", m_item.id, "'"));
    m_vm.sendMessage(where->request);
    UserDefaults::setExpandedAppCats(m_vm.expandedAppCats());
    m_vm.updateMenu();
}

void PanelDrag::finish()
{
    if (!m_active)
        return;
    m_active = false;
    qApp->removeEventFilter(this);
    delete m_image;
    m_myApps->setDropMarker({});
}

} // namespace pomvar
