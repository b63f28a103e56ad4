#include "pomvarsrv/model/WelcomeCategories.h"

#include <QCoreApplication>

#include <algorithm>

namespace pomvar::srv {

namespace {

constexpr const char* kContext = "pomvar::srv::WelcomeCategories";

struct Main
{
    const char* name;        // as Pomvar names the category, in English
    QStringList freedesktop; // the main categories it gathers
};

const Main kMains[] = {
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Accessories"), { "Utility" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Education"), { "Education" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Games"), { "Game" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Graphics"), { "Graphics" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Internet"), { "Network" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Office"), { "Office" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Programming"), { "Development" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Science"), { "Science" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Settings"), { "Settings" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "Sound & Video"),
      { "AudioVideo", "Audio", "Video" } },
    { QT_TRANSLATE_NOOP("pomvar::srv::WelcomeCategories", "System"), { "System" } },
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
        AppCategory category{ QCoreApplication::translate(kContext, main.name).toStdString(), {} };
        for (const auto& [appkey, categories] : apps)
            if (holds(main, categories))
                category.apps.push_back(appkey);
        if (!category.apps.empty())
            found.push_back(std::move(category));
    }
    // In the order of their names in the user's language.
    std::sort(found.begin(), found.end(), [](const AppCategory& a, const AppCategory& b) {
        return QString::fromStdString(a.name).localeAwareCompare(QString::fromStdString(b.name)) <
               0;
    });
    return found;
}

} // namespace pomvar::srv
