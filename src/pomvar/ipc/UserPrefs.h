#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string_view>

namespace pomvar {

// The user's menu preferences, owned by the runtime server. JSON keys are upper camel case.
struct UserPrefs
{
    std::int64_t menuDensity = 0;
    bool animationFx = true;
    bool saveExpAppCats = true;
    bool saveLastMenu = true;
    bool oneExpAppCat = false;

    // Strict: stops the process unless every key is present with its exact JSON type.
    static UserPrefs decode(std::string_view json);
    nlohmann::json toJson() const;

    friend bool operator==(const UserPrefs&, const UserPrefs&) = default;
};

} // namespace pomvar
