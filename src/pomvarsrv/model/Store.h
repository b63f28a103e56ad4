#pragma once

#include "pomvarsrv/model/AppCategory.h"
#include "pomvarsrv/model/SearchPrefs.h"
#include "wire/Records.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pomvar::srv {

// Everything the user owns: pins, categories, the recent list, the apps hidden from Pomvar, how
// much each app is used and the preferences. App keys
// are kept even when the app is not installed, so an app that comes back finds its place again.
// Plain C++; reading and writing the file is StoreFile's job.
class Store
{
public:
    static constexpr std::size_t kMaxRecent = 12;

    const std::vector<std::string>& pins() const { return m_pins; }
    const std::vector<AppCategory>& categories() const { return m_categories; }
    const std::vector<std::string>& recent() const { return m_recent; }
    const std::vector<std::string>& hidden() const { return m_hidden; }
    const UserPrefs& prefs() const { return m_prefs; }

    bool isPinned(const std::string& appkey) const;
    // Pins an unpinned app at the end, unpins a pinned one; returns whether it is now pinned.
    bool togglePin(const std::string& appkey);

    const AppCategory* category(const std::string& name) const;
    // Files the app into the category or takes it out; nothing when there is no such category.
    std::optional<bool> toggleMember(const std::string& appkey, const std::string& category);
    // False when the name is empty or taken.
    bool createCategory(const std::string& name);
    bool addMember(const std::string& appkey, const std::string& category);
    bool deleteCategory(const std::string& name);
    // False when `from` does not exist or `to` is empty or taken.
    bool renameCategory(const std::string& from, const std::string& to);

    // Puts the app first, once, dropping the oldest beyond kMaxRecent.
    void pushRecent(const std::string& appkey);
    // False when the list was already empty.
    bool clearRecent();
    // The list as it was before a clearing (its undo); at most kMaxRecent apps are kept.
    void setRecent(std::vector<std::string> recent);

    // A hidden app is left out of Pomvar's menus and search; its pins and categories are kept.
    bool isHidden(const std::string& appkey) const;
    // False when nothing changed.
    bool setHidden(const std::string& appkey, bool hidden);

    void setPrefs(const UserPrefs& prefs) { m_prefs = prefs; }
    const SearchPrefs& searchPrefs() const { return m_searchPrefs; }
    void setSearchPrefs(SearchPrefs prefs) { m_searchPrefs = std::move(prefs); }

    // The organizer's reordering. Each puts `keys` (in that order) just before `before`, or last
    // when `before` is not in the list; false when nothing changed. Pins and members not yet in
    // the list are added there; unknown categories are left out.
    bool placePins(const std::vector<std::string>& keys, const std::string& before);
    bool placeCategories(const std::vector<std::string>& names, const std::string& before);
    bool placeMembers(const std::string& category,
                      const std::vector<std::string>& keys,
                      const std::string& before);
    bool unpin(const std::vector<std::string>& keys);
    bool removeMembers(const std::string& category, const std::vector<std::string>& keys);
    // The version an update replaced, until the front end has been told the update is complete;
    // empty otherwise.
    const std::string& updatedFrom() const { return m_updatedFrom; }
    void setUpdatedFrom(std::string version) { m_updatedFrom = std::move(version); }

    // Use decays by half every kUseHalfLife seconds: recent launches count more than old ones.
    static constexpr double kUseHalfLife = 14 * 24 * 3600;
    // One more launch at `now` (seconds since the epoch).
    void noteUse(const std::string& appkey, std::int64_t now);
    // The app's use as of `now`: 0 for an app never launched.
    double use(const std::string& appkey, std::int64_t now) const;
    // Every used app's use as of `now`.
    std::unordered_map<std::string, double> uses(std::int64_t now) const;

    nlohmann::json toJson() const;
    // The preferences as both the store file and the get-user-prefs reply hold them.
    static nlohmann::json prefsJson(const UserPrefs& prefs);
    // Nothing when the value is not a store; unknown members are ignored, missing ones default.
    static std::optional<Store> fromJson(const nlohmann::json& value);

    bool operator==(const Store&) const = default;

private:
    AppCategory* findCategory(const std::string& name);

    std::vector<std::string> m_pins;
    std::vector<AppCategory> m_categories;
    std::vector<std::string> m_recent;
    std::vector<std::string> m_hidden;
    UserPrefs m_prefs;
    SearchPrefs m_searchPrefs;
    std::string m_updatedFrom;
    struct Use
    {
        double score = 0;    // as of `at`
        std::int64_t at = 0; // seconds since the epoch
        bool operator==(const Use&) const = default;
    };
    std::map<std::string, Use> m_use;
};

} // namespace pomvar::srv
