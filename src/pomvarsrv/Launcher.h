#pragma once

#include <QString>

#include <utility>
#include <vector>

namespace pomvar::srv {

// Starts an app from its desktop file id through GIO, which handles Exec field codes,
// Terminal=true and D-Bus activation. The app is spawned detached (GIO reaps the intermediate
// child), so the server never waits for it and the app outlives the server.
class Launcher
{
public:
    // True when the app was started; otherwise `error` says why.
    static bool launch(const QString& desktopId, QString* error);
    // The entry's desktop actions ("New Window" ...): id and localised name, in the entry's order.
    static std::vector<std::pair<QString, QString>> actions(const QString& desktopId);
    static bool launchAction(const QString& desktopId, const QString& action, QString* error);
};

} // namespace pomvar::srv
