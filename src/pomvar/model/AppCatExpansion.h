#pragma once

#include "ipc/UserPrefs.h"
#include "model/UserDefaults.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace pomvar {

// Reconciles the saved category expansion map with the categories of a fresh build.
class AppCatExpansion
{
public:
    using ExpansionMap = UserDefaults::ExpansionMap;

    // Applies the renames ("old" → "new", in order) to `saved`, gives new categories a
    // collapsed entry, drops entries of categories that are gone, and collapses everything
    // when the user does not keep expansions. A rename without "old" or "new", or absent
    // preferences, stop the process.
    static ExpansionMap reconcile(ExpansionMap saved,
                                  const nlohmann::json& renames,
                                  const std::vector<std::string>& categories,
                                  const std::optional<UserPrefs>& prefs);
};

} // namespace pomvar
