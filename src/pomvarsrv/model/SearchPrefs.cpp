#include "pomvarsrv/model/SearchPrefs.h"

#include <nlohmann/json.hpp>

namespace pomvar::srv {

namespace {
constexpr const char* kShortcut = "shortcut";
constexpr const char* kProviders = "providers";
constexpr const char* kProviderChoices = "providerChoices";
} // namespace

bool SearchPrefs::providerEnabled(const std::string& id, bool byDefault) const
{
    const auto choice = providerChoices.find(id);
    return providers && (choice == providerChoices.end() ? byDefault : choice->second);
}

nlohmann::json SearchPrefs::toJson() const
{
    return { { kShortcut, shortcut },
             { kProviders, providers },
             { kProviderChoices, providerChoices } };
}

SearchPrefs SearchPrefs::fromJson(const nlohmann::json& value)
{
    SearchPrefs prefs;
    if (!value.is_object())
        return prefs;
    if (const auto it = value.find(kShortcut); it != value.end() && it->is_string())
        prefs.shortcut = it->get<std::string>();
    if (const auto it = value.find(kProviders); it != value.end() && it->is_boolean())
        prefs.providers = it->get<bool>();
    if (const auto it = value.find(kProviderChoices); it != value.end() && it->is_object())
        for (const auto& [id, enabled] : it->items())
            if (enabled.is_boolean())
                prefs.providerChoices[id] = enabled.get<bool>();
    return prefs;
}

} // namespace pomvar::srv
