#include "pomvarsrv/ui/WindowActivation.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace pomvar::srv {

namespace {

// A token older than this belongs to an action the user has moved on from.
constexpr qint64 kTokenLifeMs = 10'000;

QString pendingToken;
QElapsedTimer tokenAge;

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, uint16_t(qstrlen(name)), name), nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window)
{
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr), &std::free);
    return tree ? tree->root : xcb_window_t(XCB_WINDOW_NONE);
}

// A window manager that follows the EWMH names its check window on the root.
bool hasWindowManager(xcb_connection_t* connection, xcb_window_t root)
{
    const Reply<xcb_get_property_reply_t> check(
        xcb_get_property_reply(connection,
                               xcb_get_property(connection,
                                                0,
                                                root,
                                                atom(connection, "_NET_SUPPORTING_WM_CHECK"),
                                                XCB_ATOM_WINDOW,
                                                0,
                                                1),
                               nullptr),
        &std::free);
    return check && xcb_get_property_value_length(check.get()) == 4;
}

} // namespace

void WindowActivation::setToken(const QString& token)
{
    pendingToken = token;
    tokenAge.start();
}

void WindowActivation::activate(QWidget& window)
{
    const QString token =
        tokenAge.isValid() && tokenAge.elapsed() < kTokenLifeMs ? pendingToken : QString();
    pendingToken.clear();
    tokenAge.invalidate();
    if (!token.isEmpty() && QGuiApplication::platformName() == QLatin1String("xcb")) {
        static const QRegularExpression timePart(QStringLiteral("_TIME(\\d+)$"));
        const auto match = timePart.match(token);
        if (match.hasMatch() && activateOnX11(window, match.captured(1).toUInt()))
            return;
    }
    // Qt's Wayland plugin hands this variable to the compositor with the activation request.
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    window.activateWindow();
}

bool WindowActivation::activateOnX11(QWidget& window, quint32 time)
{
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || time == 0)
        return false;
    xcb_connection_t* connection = x11->connection();
    const auto id = xcb_window_t(window.winId());
    const xcb_window_t root = rootOf(connection, id);
    // The user's time on the window: what window managers weigh against the focus's.
    xcb_change_property(connection,
                        XCB_PROP_MODE_REPLACE,
                        id,
                        atom(connection, "_NET_WM_USER_TIME"),
                        XCB_ATOM_CARDINAL,
                        32,
                        1,
                        &time);
    if (hasWindowManager(connection, root)) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = id;
        message.type = atom(connection, "_NET_ACTIVE_WINDOW");
        message.data.data32[0] = 1; // from an application
        message.data.data32[1] = time;
        xcb_send_event(connection,
                       0,
                       root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
    } else {
        // No window manager: the focus is ours to set, stamped with the user's time so that the
        // X server does not take it for an older request.
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, id, time);
    }
    xcb_flush(connection);
    window.activateWindow();
    return true;
}

} // namespace pomvar::srv
