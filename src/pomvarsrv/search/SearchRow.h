#pragma once

#include <QString>

namespace pomvar::srv {

// One row of the search window: an app, or one of an app's desktop actions.
struct SearchRow
{
    QString key;    // desktop file id, or the action's id
    QString name;   // the row's accessible name too
    QString detail; // second line: generic name or comment
    QString icon;   // 24 px file
    QString icon2x; // 48 px file

    bool operator==(const SearchRow&) const = default;
};

} // namespace pomvar::srv
