#pragma once

#include "model/UserDefaults.h"
#include "wire/Records.h"

#include <optional>
#include <string>
#include <vector>

namespace pomvar {

// One entry of the My Apps payload's "renamedAppcats".
struct CategoryRename
{
    std::string oldName;
    std::string newName;
    // The entry in JSON, members in the order sent, when it lacks "old" or "new";
    // reconcile() then stops the process with it.
    std::optional<std::string> malformed;
};

// Reconciles the saved category expansion map with the categories of a fresh build.
class AppCatExpansion
{
public:
    using ExpansionMap = UserDefaults::ExpansionMap;

    // Applies the renames (old → new, in order) to `saved`, gives new categories a collapsed
    // entry, drops entries of categories that are gone, and collapses everything when the user
    // does not keep expansions. A malformed rename, or absent preferences, stop the process.
    static ExpansionMap reconcile(ExpansionMap saved,
                                  const std::vector<CategoryRename>& renames,
                                  const std::vector<std::string>& categories,
                                  const std::optional<UserPrefs>& prefs);
};

} // namespace pomvar
