#pragma once

#include <string>
#include <vector>

namespace pomvar::srv {

// A user's folder of apps: its name is also its identity; its app keys are kept in order.
struct AppCategory
{
    std::string name;
    std::vector<std::string> apps;

    bool operator==(const AppCategory&) const = default;
};

} // namespace pomvar::srv
