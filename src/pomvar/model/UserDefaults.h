#pragma once

#include <map>
#include <optional>
#include <string>

namespace pomvar {

// The front end's per-user defaults: "LastMenu" and "ExpandedAppCats", kept with QSettings in
// the user's configuration folder ($XDG_CONFIG_HOME/pomvar/pomvar.conf).
class UserDefaults
{
public:
    using ExpansionMap = std::map<std::string, bool>;

    // 0 when never written (or not an integer).
    static long long lastMenu();
    static void setLastMenu(long long menu);

    // Nothing when the key is missing or does not hold a map of string to boolean.
    static std::optional<ExpansionMap> expandedAppCats();
    static void setExpandedAppCats(const ExpansionMap& expanded);
};

} // namespace pomvar
