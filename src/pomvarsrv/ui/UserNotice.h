#pragma once

#include <QString>

namespace pomvar::srv {

// Tells the user something went wrong, in a message box that does not block the server.
class UserNotice
{
public:
    static void show(const QString& title, const QString& text);
};

} // namespace pomvar::srv
