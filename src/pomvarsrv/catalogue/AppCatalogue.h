#pragma once

#include "pomvarsrv/model/DesktopApp.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace pomvar::srv {

// The installed applications, from the desktop entries through GIO (the XDG data folders in
// order of precedence; hidden, NoDisplay, OnlyShowIn/NotShowIn and TryExec honoured), read one
// at a time (DesktopEntries). Reports changes, debounced: GIO's monitor fires once and is armed
// again by the next listing.
class AppCatalogue : public QObject
{
    Q_OBJECT

public:
    explicit AppCatalogue(QObject* parent = nullptr);
    ~AppCatalogue() override;

    // Adds the Flatpak export folders to XDG_DATA_DIRS when they exist and are missing from it.
    // Must run before anything asks GIO for apps.
    static void addFlatpakDataDirs();
    // The version of the GLib the server runs with, "2.74.6".
    static QString glibVersion();

    // Starts watching the desktop entries, the user's applications folder made first; on the main
    // thread, where `changed` is reported.
    void watch();
    // Calls `visit` with each app to show, one at a time, in the order of their desktop file ids.
    // Safe on any thread; arms the monitor again.
    static void forEachApp(const std::function<void(DesktopApp)>& visit);
    // The apps to show, in the reading order of their names (NameOrder). Safe on any thread;
    // arms the monitor again.
    static std::vector<DesktopApp> listApps(std::size_t expected = 0);

Q_SIGNALS:
    void changed();

private:
    // Called by GIO's monitor, on the main thread.
    Q_INVOKABLE void onMonitorChanged();

    void* m_monitor = nullptr; // GAppInfoMonitor
    unsigned long m_handlerId = 0;
    QTimer m_debounce;
};

} // namespace pomvar::srv
