#include "Request.h"

#include <array>

namespace pomvar::srv {

namespace {

constexpr std::array<std::string_view, 9> kAwaited = {
    "get-app-status",       "get-user-prefs",           "get-menu-data-modified-status",
    "get-myapps-menu-data", "get-recentapps-menu-data", "get-allapps-menu-data",
    "toggle-set-appcat",    "check-update-available",   "get-app-update-status",
};

constexpr std::array<std::string_view, 10> kFireAndForget = {
    "check-updates",   "organizer",
    "launch",          "get-info-app",
    "toggle-pin-app",  "create-new-appcat-cxtmnu",
    "get-info-appcat", "app-search",
    "about",           "quit",
};

template <std::size_t N>
bool contains(const std::array<std::string_view, N>& ids, std::string_view id)
{
    for (const auto candidate : ids) {
        if (candidate == id)
            return true;
    }
    return false;
}

} // namespace

bool Request::expectsReply(std::string_view id)
{
    return contains(kAwaited, id);
}

bool Request::isKnown(std::string_view id)
{
    return contains(kAwaited, id) || contains(kFireAndForget, id);
}

} // namespace pomvar::srv
