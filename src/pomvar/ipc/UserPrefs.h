#pragma once

#include <cstdint>

namespace pomvar {

// The user's menu preferences, owned by the runtime server. JSON keys are upper camel case.
struct UserPrefs
{
    std::int64_t menuDensity = 0;
    bool animationFx = true;
    bool saveExpAppCats = true;
    bool saveLastMenu = true;
    bool oneExpAppCat = false;

    friend bool operator==(const UserPrefs&, const UserPrefs&) = default;
};

} // namespace pomvar
