#pragma once

#include <QString>

namespace pomvar::srv {

// One row of the search window: an app, one of an app's desktop actions, the calculator's
// answer, or a search provider's name above its results.
struct SearchRow
{
    enum class Kind
    {
        app,
        action,
        calculation,
        // The provider's name and icon: not selectable.
        providerHeader,
        providerResult,
    };

    QString key;    // desktop file id, the action's id, the provider's result id
    QString name;   // the row's accessible name too; the calculator's answer
    QString detail; // second line: generic name or comment, the expression as read
    QString icon;   // 24 px file
    QString icon2x; // 48 px file
    Kind kind = Kind::app;
    QString source = {}; // a provider's rows: the provider (its desktop file id)

    bool operator==(const SearchRow&) const = default;
};

} // namespace pomvar::srv
