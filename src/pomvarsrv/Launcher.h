#pragma once

#include <QString>

namespace pomvar::srv {

// Starts an app from its desktop file id through GIO, which handles Exec field codes,
// Terminal=true and D-Bus activation. The app is spawned detached (GIO reaps the intermediate
// child), so the server never waits for it and the app outlives the server.
class Launcher
{
public:
    // True when the app was started; otherwise `error` says why.
    static bool launch(const QString& desktopId, QString* error);
};

} // namespace pomvar::srv
