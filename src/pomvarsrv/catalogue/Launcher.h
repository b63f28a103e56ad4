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
    // Starts the app, or one of its desktop actions when `action` is given. True when it was
    // started; otherwise `error` says why (GIO reports no failure of an action's own).
    static bool launch(const QString& desktopId, const QString& action, QString* error);
    // The entry's desktop actions ("New Window" ...): id and localised name, in the entry's order.
    static std::vector<std::pair<QString, QString>> actions(const QString& desktopId);
};

} // namespace pomvar::srv
