#include "ui/PanelWindow.h"

#include "ui/InputTime.h"
#include "ui/PanelPlacement.h"
#include "ui/PomvarView.h"
#include "ui/SearchHandOver.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace pomvar {

namespace {
// A click on the tray icon while the panel is open first closes the panel (a click outside a
// popup), then reaches the icon; within this many milliseconds it counts as the same click.
constexpr qint64 kSameClickMs = 300;
// Closing the panel gives the focus back to the desktop, and the window system reports the
// application inactive only a moment later (up to about half a second on X11). A click on the
// tray icon within that moment opens the panel again; that late report must not close it.
constexpr qint64 kLateDeactivationMs = 1000;
} // namespace

PanelWindow::PanelWindow(PomvarViewModel& vm, std::function<void()> terminate, QWidget* parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
    , m_vm(vm)
    , m_terminate(std::move(terminate))
{
    setObjectName(QStringLiteral("pomvarPanel"));
    //: The panel's window title: the product's name.
    setWindowTitle(tr("Pomvar"));
    setAccessibleName(windowTitle());
    setFixedSize(panelWidth, panelHeight);
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_handOver = new SearchHandOver(
        m_vm, *this, [this] { dismiss(); }, this);
    InputTime::watch();
}

PanelWindow::~PanelWindow() = default;

PomvarView* PanelWindow::view() const
{
    return m_view;
}

void PanelWindow::open(const QRect& anchor)
{
    // The previous opening's content is hidden and idle: nothing of it is on the stack now.
    delete m_view;
    m_view = new PomvarView(
        m_vm, [this] { dismiss(); }, m_terminate, this);
    layout()->addWidget(m_view);

    QScreen* screen = nullptr;
    if (anchor.isValid() && !anchor.isEmpty())
        screen = QGuiApplication::screenAt(anchor.center());
    if (!screen)
        screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    move(PanelPlacement::topLeft(size(), anchor, QCursor::pos(), available));

    m_sinceOpened.start();
    // Typing searches: the search window opens where the panel is, with what is typed.
    m_handOver->watchKeys();
    show();
    raise();
    activateWindow();
    m_view->onAppear();
    Q_EMIT opened();
}

void PanelWindow::toggle(const QRect& anchor)
{
    if (isVisible()) {
        dismiss();
        return;
    }
    if (m_sinceHidden.isValid() && m_sinceHidden.elapsed() < kSameClickMs) {
        m_sinceHidden.invalidate();
        return;
    }
    open(anchor);
}

void PanelWindow::dismiss()
{
    m_dismissing = true;
    hide();
    m_dismissing = false;
}

void PanelWindow::closeEvent(QCloseEvent* event)
{
    // Qt closes popups when the application turns inactive. Within a moment of the opening that
    // is the late report of the last closing, not the user leaving: the panel stays. (A click
    // outside in that moment does not close it either; the next one does.)
    if (m_sinceOpened.isValid() && m_sinceOpened.elapsed() < kLateDeactivationMs &&
        QGuiApplication::applicationState() != Qt::ApplicationActive) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

void PanelWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    // Only a click outside the panel can be the click on the tray icon that follows.
    if (m_dismissing)
        m_sinceHidden.invalidate();
    else
        m_sinceHidden.start();
    if (m_view)
        m_view->onDisappear();
    Q_EMIT dismissed();
}

void PanelWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        dismiss();
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace pomvar
