#include "ui/ControlMenu.h"

#include "model/PomvarViewModel.h"
#include "ui/Assets.h"
#include "ui/CheckForUpdatesMenuItem.h"
#include "ui/ControlButtonStyle.h"
#include "wire/Protocol.h"

#include <QMenu>
#include <QPainter>

namespace pomvar {

ControlMenu::ControlMenu(PomvarViewModel& vm,
                         std::function<void()> dismiss,
                         std::function<void()> terminate,
                         QWidget* parent)
    : QToolButton(parent)
    , m_vm(vm)
    , m_dismiss(std::move(dismiss))
    , m_terminate(std::move(terminate))
    , m_menu(new QMenu(this))
{
    setObjectName(QStringLiteral("controlMenu"));
    setAccessibleName(QStringLiteral("Pomvar Menu"));
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setMenu(m_menu);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);

    QAction* settings = m_menu->addAction(QStringLiteral("Settings…"));
    settings->setObjectName(QStringLiteral("settingsMenuItem"));
    connect(settings, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.settings();
    });
    QAction* about = m_menu->addAction(QStringLiteral("About…"));
    about->setObjectName(QStringLiteral("aboutMenuItem"));
    connect(about, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::plain(request::about));
    });
    m_menu->addAction(new CheckForUpdatesMenuItem(m_vm, m_dismiss, m_menu));
    m_menu->addSeparator();
    QAction* quit = m_menu->addAction(QStringLiteral("Quit"));
    quit->setObjectName(QStringLiteral("quitMenuItem"));
    connect(quit, &QAction::triggered, this, [this] {
        m_dismiss();
        m_vm.sendMessage(request::plain(request::quit));
        if (m_terminate)
            m_terminate();
    });

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
}

} // namespace pomvar
