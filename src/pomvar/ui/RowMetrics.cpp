#include "ui/RowMetrics.h"

#include <algorithm>

#include "log/Output.h"

namespace pomvar {

bool RowMetrics::isCompact(const std::optional<UserPrefs>& prefs)
{
    if (!prefs)
        fatalStop("PomvarView: the user's preferences are not loaded");
    return prefs->menuDensity == 1;
}

int RowMetrics::appIconSize(Pomvar menu, const std::optional<UserPrefs>& prefs)
{
    if (menu == Pomvar::AllApps)
        return 18;
    return isCompact(prefs) ? 18 : 24;
}

int RowMetrics::appLeadingPadding(Pomvar menu,
                                  bool isPinnedApp,
                                  const std::optional<UserPrefs>& prefs)
{
    if (menu != Pomvar::MyApps)
        return 5;
    if (!isPinnedApp)
        return 36;
    return isCompact(prefs) ? 6 : 8;
}

int RowMetrics::categoryIconSize(const std::optional<UserPrefs>& prefs)
{
    return isCompact(prefs) ? 16 : 24;
}

QRect RowMetrics::nameRect(const QRect& row, int left)
{
    return QRect(left,
                 row.top() + rowVerticalPadding,
                 std::max(0, row.right() - 4 - left),
                 row.height() - 2 * rowVerticalPadding);
}

} // namespace pomvar
