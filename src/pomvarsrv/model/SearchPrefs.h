#pragma once

#include <nlohmann/json_fwd.hpp>

#include <map>
#include <string>

namespace pomvar::srv {

// The search's settings, kept in the store: the global shortcut that opens it, and which of the
// desktop's search providers it asks.
struct SearchPrefs
{
    static constexpr const char* kDefaultShortcut = "Meta+Space";

    // The key sequence as Qt writes it portably ("Meta+Space"); empty: no shortcut.
    std::string shortcut = kDefaultShortcut;
    // Whether providers are asked at all.
    bool providers = true;
    // The user's choice per provider (its desktop file id); one not named follows its default.
    std::map<std::string, bool> providerChoices;

    bool providerEnabled(const std::string& id, bool byDefault) const;

    nlohmann::json toJson() const;
    // Members missing or of another type keep their defaults: a setting is never worth the store.
    static SearchPrefs fromJson(const nlohmann::json& value);

    bool operator==(const SearchPrefs&) const = default;
};

} // namespace pomvar::srv
