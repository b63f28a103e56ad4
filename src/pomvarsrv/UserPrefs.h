#pragma once

#include <cstdint>

namespace pomvar::srv {

// The user's menu preferences, with their defaults.
struct UserPrefs
{
    std::int64_t menuDensity = 0;
    bool animationFx = true;
    bool saveExpAppCats = true;
    bool saveLastMenu = true;
    bool oneExpAppCat = false;

    bool operator==(const UserPrefs&) const = default;
};

} // namespace pomvar::srv
