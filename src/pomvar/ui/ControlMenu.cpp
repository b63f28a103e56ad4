#include "ui/ControlMenu.h"

#include "model/PomvarViewModel.h"
#include "ui/Assets.h"
#include "ui/ControlButtonStyle.h"
#include "ui/ControlMenuEntries.h"
#include "ui/FocusRing.h"

#include <QKeyEvent>
#include <QPainter>

namespace pomvar {

ControlMenu::ControlMenu(PomvarViewModel& vm,
                         std::function<void()> dismiss,
                         std::function<void()> terminate,
                         QWidget* parent)
    : QToolButton(parent)
    , m_vm(vm)
    , m_menu(new ControlMenuEntries(vm, std::move(dismiss), std::move(terminate), this))
{
    setObjectName(QStringLiteral("controlMenu"));
    //: The control menu's button, as screen readers name it.
    setAccessibleName(tr("Pomvar Menu"));
    setPopupMode(QToolButton::InstantPopup);
    // Reached by Tab; Space, Enter or Down opens the entries.
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    setMenu(m_menu);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    refresh(m_vm.isUpdateAvailable());
    connect(&m_vm, &PomvarViewModel::isUpdateAvailableChanged, this, &ControlMenu::refresh);
}

void ControlMenu::refresh(bool updateAvailable)
{
    m_imageAsset = updateAvailable ? QStringLiteral("ctrlMenuBadge") : QStringLiteral("ctrlMenu");
    update();
}

QSize ControlMenu::sizeHint() const
{
    return { 20 + 2 * ControlButtonStyle::image.spacing + 8, 28 };
}

void ControlMenu::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect bounds =
        ControlButtonStyle::image.paintBackground(painter, rect(), isDown(), palette());
    constexpr int side = 20;
    const QColor colour = palette().color(QPalette::Active, QPalette::WindowText);
    painter.drawPixmap(
        QPoint(bounds.center().x() - side / 2 + 1, (height() - side) / 2),
        Assets::pixmap(m_imageAsset, QSize(side, side), devicePixelRatioF(), colour));
    if (hasFocus())
        FocusRing::paint(painter, bounds, palette(), ControlButtonStyle::image.spacing);
}

void ControlMenu::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Down)
        showMenu();
    else
        QToolButton::keyPressEvent(event);
}

} // namespace pomvar
