#include "ui/SearchHandOver.h"

#include "ipc/JsonDocument.h"
#include "model/PomvarViewModel.h"
#include "ui/InputTime.h"
#include "ui/UiLog.h"
#include "wire/Protocol.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace pomvar {

namespace {

// How often the panel looks whether the search window has the focus, and for how long at most.
constexpr int kFocusCheckMs = 4;
constexpr qint64 kFocusWaitMs = 500;

xcb_window_t inputFocus()
{
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return XCB_WINDOW_NONE;
    xcb_connection_t* connection = x11->connection();
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr),
        &std::free);
    return reply ? reply->focus : xcb_window_t(XCB_WINDOW_NONE);
}

} // namespace

SearchHandOver::SearchHandOver(PomvarViewModel& vm,
                               QWidget& panel,
                               std::function<void()> dismiss,
                               QObject* parent)
    : QObject(parent)
    , m_vm(vm)
    , m_panel(panel)
    , m_dismiss(std::move(dismiss))
{
    m_focusCheck.setInterval(kFocusCheckMs);
    connect(&m_focusCheck, &QTimer::timeout, this, &SearchHandOver::checkFocus);
}

bool SearchHandOver::startsSearch(const QKeyEvent& key)
{
    const QString text = key.text();
    return !text.isEmpty() && !text.trimmed().isEmpty() && text.front().isPrint() &&
           !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

void SearchHandOver::watchKeys()
{
    qApp->removeEventFilter(this);
    qApp->installEventFilter(this);
}

void SearchHandOver::start(const QKeyEvent& first)
{
    m_active = true;
    printLine(lcUi(), "SearchHandOver.start(): the panel's typing goes to the search window");
    if (const auto token = InputTime::activationToken(first.timestamp()))
        m_vm.sendMessage(request::activationToken(*token));
    const QPoint place = m_panel.pos();
    const auto reply =
        m_vm.sendMessageAndAwaitResponseData(request::appSearchAt(place.x(), place.y()));
    std::uint64_t window = 0;
    const auto document = reply ? JsonDocument::parse(*reply) : std::nullopt;
    if (!document || document->root()[field::window].get(window) != simdjson::SUCCESS)
        window = 0;
    m_window = quint32(window);
    forward(first);
    if (m_window == 0) {
        finish();
        return;
    }
    m_since.start();
    m_focusCheck.start();
}

bool SearchHandOver::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
        return QObject::eventFilter(watched, event);
    // Every key is the search's while the panel hands over, whichever window of ours it was
    // sent to.
    if (m_active) {
        if (type == QEvent::KeyPress)
            forward(*static_cast<QKeyEvent*>(event));
        return true;
    }
    // A key on its way to the open panel itself (not to one of its menus) that no control of the
    // panel takes: typing.
    const auto* key = static_cast<QKeyEvent*>(event);
    if (type == QEvent::KeyPress && event->spontaneous() && m_panel.isVisible() &&
        watched == static_cast<QObject*>(m_panel.windowHandle()) &&
        QApplication::activePopupWidget() == &m_panel && startsSearch(*key)) {
        start(*key);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void SearchHandOver::forward(const QKeyEvent& key)
{
    m_vm.sendMessage(
        request::appSearchKey(key.key(), int(key.modifiers()), key.text().toStdString()));
}

void SearchHandOver::checkFocus()
{
    if (inputFocus() == m_window || m_since.elapsed() > kFocusWaitMs)
        finish();
}

void SearchHandOver::finish()
{
    m_focusCheck.stop();
    // Closing the panel lets the keyboard go; the keys the window system sent before it did are
    // on their way to this program still, and a round trip brings them in to be forwarded.
    m_dismiss();
    QGuiApplication::sync();
    m_active = false;
    m_vm.sendMessage(request::plain(request::appSearchTyped));
}

} // namespace pomvar
