#pragma once

#include <QRect>

#include "ui/Pomvar.h"
#include "wire/Records.h"

#include <optional>

namespace pomvar {

// Sizes of the menu rows, which follow the user's menu density (1 is compact, any other value
// normal). All Apps rows are always compact, and only pinned My Apps rows take a
// density-dependent indent: both on purpose.
class RowMetrics
{
public:
    // Icon height `sz` of an app row.
    static int appIconSize(Pomvar menu, const std::optional<UserPrefs>& prefs);
    // Leading padding `lpad` of an app row.
    static int appLeadingPadding(Pomvar menu,
                                 bool isPinnedApp,
                                 const std::optional<UserPrefs>& prefs);
    // Side of the square frame of a category icon.
    static int categoryIconSize(const std::optional<UserPrefs>& prefs);
    static bool isCompact(const std::optional<UserPrefs>& prefs);
    // Where a row's name goes: from `left` to the row's end, inside the vertical padding.
    static QRect nameRect(const QRect& row, int left);

    static constexpr int rowVerticalPadding = 2;
    static constexpr int appSpacing = 4;
    static constexpr int categorySpacing = 6;
    static constexpr int categoryLeadingPadding = 6;
    static constexpr int categoryIconLeadingPadding = -4;
    // Leading padding of the My Apps stack and of the apps inside a category.
    static constexpr int myAppsLeadingPadding = 6;
    static constexpr int categoryAppLeadingPadding = 8;
    // Room for the disclosure chevron in front of a category label.
    static constexpr int disclosureWidth = 14;
};

} // namespace pomvar
