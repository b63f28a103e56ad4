#include "pomvarsrv/shortcut/X11KeyGrab.h"

#include <QLoggingCategory>
#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdlib>
#include <memory>

namespace pomvar::srv {

namespace {

Q_LOGGING_CATEGORY(lcShortcut, "pomvarsrv.shortcut")

// Caps Lock (LockMask) and Num Lock (Mod2Mask, where X servers put it) left as they are.
constexpr std::uint16_t kLocks[] = { 0,
                                     XCB_MOD_MASK_LOCK,
                                     XCB_MOD_MASK_2,
                                     XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 };
constexpr std::uint8_t kBadAccess = 10;

} // namespace

X11KeyGrab::X11KeyGrab(QObject* parent)
    : QObject(parent)
{}

X11KeyGrab::~X11KeyGrab()
{
    m_notifier.reset();
    if (m_connection)
        xcb_disconnect(m_connection);
}

bool X11KeyGrab::connect()
{
    if (m_connection)
        return true;
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return false;
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return false;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem; ++i)
        xcb_screen_next(&screens);
    m_connection = connection;
    m_root = screens.data->root;
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection),
                                                   QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11KeyGrab::readEvents);
    return true;
}

X11KeyGrab::Result X11KeyGrab::grab(const KeyChord& chord)
{
    ungrab();
    if (!connect())
        return Result::noDisplay;
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
        xcb_key_symbols_alloc(m_connection), &xcb_key_symbols_free);
    const std::unique_ptr<xcb_keycode_t, decltype(&std::free)> codes(
        xcb_key_symbols_get_keycode(symbols.get(), chord.keysym), &std::free);
    if (!codes || *codes.get() == XCB_NO_SYMBOL)
        return Result::noKey;
    bool taken = false;
    for (const xcb_keycode_t* code = codes.get(); *code != XCB_NO_SYMBOL; ++code)
        for (const std::uint16_t locks : kLocks) {
            const std::uint16_t modifiers = chord.modifiers | locks;
            const auto cookie = xcb_grab_key_checked(m_connection,
                                                     1,
                                                     m_root,
                                                     modifiers,
                                                     *code,
                                                     XCB_GRAB_MODE_ASYNC,
                                                     XCB_GRAB_MODE_ASYNC);
            const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
                xcb_request_check(m_connection, cookie), &std::free);
            if (error)
                taken = taken || error->error_code == kBadAccess;
            else
                m_grabbed.emplace_back(*code, modifiers);
        }
    if (taken) {
        ungrab();
        qCInfo(lcShortcut) << "the key" << chord.gtkAccelerator()
                           << "is grabbed by another program";
        return Result::taken;
    }
    qCInfo(lcShortcut) << "grabbed" << chord.gtkAccelerator() << "on the X11 display";
    readEvents();
    return Result::grabbed;
}

void X11KeyGrab::ungrab()
{
    if (!m_connection)
        return;
    for (const auto& [code, modifiers] : m_grabbed)
        xcb_ungrab_key(m_connection, code, m_root, modifiers);
    m_grabbed.clear();
    xcb_flush(m_connection);
}

void X11KeyGrab::readEvents()
{
    while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS)
            Q_EMIT pressed(reinterpret_cast<xcb_key_press_event_t*>(event)->time);
        std::free(event);
    }
    if (xcb_connection_has_error(m_connection)) {
        qCWarning(lcShortcut) << "the X11 display went away: no global shortcut";
        m_notifier->setEnabled(false);
    }
}

} // namespace pomvar::srv
