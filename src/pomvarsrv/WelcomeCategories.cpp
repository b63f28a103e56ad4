#include "WelcomeCategories.h"

#include <algorithm>

namespace pomvar::srv {

namespace {

struct Main
{
    const char* name;        // as Pomvar names the category
    QStringList freedesktop; // the main categories it gathers
};

// In the order of the names.
const Main kMains[] = {
    { "Accessories", { "Utility" } },
    { "Education", { "Education" } },
    { "Games", { "Game" } },
    { "Graphics", { "Graphics" } },
    { "Internet", { "Network" } },
    { "Office", { "Office" } },
    { "Programming", { "Development" } },
    { "Science", { "Science" } },
    { "Settings", { "Settings" } },
    { "Sound & Video", { "AudioVideo", "Audio", "Video" } },
    { "System", { "System" } },
};

bool holds(const Main& main, const QStringList& categories)
{
    if (main.freedesktop.first() == u"System" && categories.contains(u"Settings"))
        return false;
    return std::any_of(main.freedesktop.begin(), main.freedesktop.end(), [&](const QString& c) {
        return categories.contains(c);
    });
}

} // namespace

std::vector<AppCategory> WelcomeCategories::from(const std::vector<App>& apps)
{
    std::vector<AppCategory> found;
    for (const Main& main : kMains) {
        AppCategory category{ main.name, {} };
        for (const auto& [appkey, categories] : apps)
            if (holds(main, categories))
                category.apps.push_back(appkey);
        if (!category.apps.empty())
            found.push_back(std::move(category));
    }
    return found;
}

} // namespace pomvar::srv
