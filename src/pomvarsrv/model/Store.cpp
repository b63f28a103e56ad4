#include "pomvarsrv/model/Store.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>

namespace pomvar::srv {

namespace {

constexpr int kFormatVersion = 1;

bool eraseValue(std::vector<std::string>& values, const std::string& value)
{
    const auto it = std::find(values.begin(), values.end(), value);
    if (it == values.end())
        return false;
    values.erase(it);
    return true;
}

bool containsValue(const std::vector<std::string>& values, const std::string& value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

// A list of unique strings, the first of each kept in place; nothing when the value is not an
// array of strings. The store file may hold a million of them: O(n log n).
std::optional<std::vector<std::string>> stringList(const nlohmann::json& value)
{
    if (!value.is_array())
        return std::nullopt;
    std::vector<std::string> list;
    std::set<std::string_view> seen; // views into `value`
    for (const auto& item : value) {
        if (!item.is_string())
            return std::nullopt;
        const auto& text = item.get_ref<const std::string&>();
        if (seen.insert(text).second)
            list.push_back(text);
    }
    return list;
}

// Moves (or adds) `keys` just before `before`, or last; an anchor that is itself moved gives
// way to the first unmoved entry after it, so that a block dropped onto itself stays put.
bool place(std::vector<std::string>& list,
           const std::vector<std::string>& keys,
           const std::string& before)
{
    const std::vector<std::string> old = list;
    auto anchor = std::find(old.begin(), old.end(), before);
    while (anchor != old.end() && containsValue(keys, *anchor))
        ++anchor;
    for (const auto& key : keys)
        eraseValue(list, key);
    auto at = anchor == old.end() ? list.end() : std::find(list.begin(), list.end(), *anchor);
    for (const auto& key : keys) {
        if (!containsValue(list, key))
            at = std::next(list.insert(at, key));
    }
    return list != old;
}

bool eraseValues(std::vector<std::string>& list, const std::vector<std::string>& keys)
{
    bool erased = false;
    for (const auto& key : keys)
        erased = eraseValue(list, key) || erased;
    return erased;
}

template <typename T>
bool readMember(const nlohmann::json& object, const char* key, T& into)
{
    const auto it = object.find(key);
    if (it == object.end())
        return true;
    if constexpr (std::is_same_v<T, bool>) {
        if (!it->is_boolean())
            return false;
    } else {
        if (!it->is_number_integer())
            return false;
    }
    into = it->get<T>();
    return true;
}

} // namespace

bool Store::isPinned(const std::string& appkey) const
{
    return containsValue(m_pins, appkey);
}

bool Store::togglePin(const std::string& appkey)
{
    if (eraseValue(m_pins, appkey))
        return false;
    m_pins.push_back(appkey);
    return true;
}

const AppCategory* Store::category(const std::string& name) const
{
    for (const auto& category : m_categories) {
        if (category.name == name)
            return &category;
    }
    return nullptr;
}

AppCategory* Store::findCategory(const std::string& name)
{
    return const_cast<AppCategory*>(std::as_const(*this).category(name));
}

std::optional<bool> Store::toggleMember(const std::string& appkey, const std::string& category)
{
    AppCategory* found = findCategory(category);
    if (!found)
        return std::nullopt;
    if (eraseValue(found->apps, appkey))
        return false;
    found->apps.push_back(appkey);
    return true;
}

bool Store::createCategory(const std::string& name)
{
    if (name.empty() || category(name))
        return false;
    m_categories.push_back(AppCategory{ name, {} });
    return true;
}

bool Store::addMember(const std::string& appkey, const std::string& category)
{
    AppCategory* found = findCategory(category);
    if (!found || containsValue(found->apps, appkey))
        return false;
    found->apps.push_back(appkey);
    return true;
}

bool Store::deleteCategory(const std::string& name)
{
    const auto it = std::find_if(m_categories.begin(),
                                 m_categories.end(),
                                 [&](const AppCategory& c) { return c.name == name; });
    if (it == m_categories.end())
        return false;
    m_categories.erase(it);
    return true;
}

bool Store::renameCategory(const std::string& from, const std::string& to)
{
    AppCategory* found = findCategory(from);
    if (!found || to.empty() || category(to))
        return false;
    found->name = to;
    return true;
}

bool Store::placePins(const std::vector<std::string>& keys, const std::string& before)
{
    return place(m_pins, keys, before);
}

bool Store::unpin(const std::vector<std::string>& keys)
{
    return eraseValues(m_pins, keys);
}

bool Store::placeCategories(const std::vector<std::string>& names, const std::string& before)
{
    std::vector<std::string> order;
    for (const auto& category : m_categories)
        order.push_back(category.name);
    std::vector<std::string> known;
    for (const auto& name : names) {
        if (containsValue(order, name))
            known.push_back(name);
    }
    if (!place(order, known, before))
        return false;
    std::vector<AppCategory> sorted;
    for (const auto& name : order)
        sorted.push_back(*category(name));
    m_categories = std::move(sorted);
    return true;
}

bool Store::placeMembers(const std::string& category,
                         const std::vector<std::string>& keys,
                         const std::string& before)
{
    AppCategory* found = findCategory(category);
    return found && place(found->apps, keys, before);
}

bool Store::removeMembers(const std::string& category, const std::vector<std::string>& keys)
{
    AppCategory* found = findCategory(category);
    return found && eraseValues(found->apps, keys);
}

void Store::pushRecent(const std::string& appkey)
{
    eraseValue(m_recent, appkey);
    m_recent.insert(m_recent.begin(), appkey);
    if (m_recent.size() > kMaxRecent)
        m_recent.resize(kMaxRecent);
}

bool Store::clearRecent()
{
    if (m_recent.empty())
        return false;
    m_recent.clear();
    return true;
}

void Store::setRecent(std::vector<std::string> recent)
{
    m_recent = std::move(recent);
    if (m_recent.size() > kMaxRecent)
        m_recent.resize(kMaxRecent);
}

bool Store::isHidden(const std::string& appkey) const
{
    return containsValue(m_hidden, appkey);
}

bool Store::setHidden(const std::string& appkey, bool hidden)
{
    if (!hidden)
        return eraseValue(m_hidden, appkey);
    if (isHidden(appkey))
        return false;
    m_hidden.push_back(appkey);
    return true;
}

void Store::noteUse(const std::string& appkey, std::int64_t now)
{
    m_use[appkey] = { use(appkey, now) + 1, now };
}

double Store::use(const std::string& appkey, std::int64_t now) const
{
    const auto found = m_use.find(appkey);
    if (found == m_use.end())
        return 0;
    const double age = double(std::max<std::int64_t>(0, now - found->second.at));
    return found->second.score * std::exp2(-age / kUseHalfLife);
}

std::unordered_map<std::string, double> Store::uses(std::int64_t now) const
{
    std::unordered_map<std::string, double> found;
    for (const auto& entry : m_use)
        found[entry.first] = use(entry.first, now);
    return found;
}

nlohmann::json Store::toJson() const
{
    nlohmann::json categories = nlohmann::json::array();
    for (const auto& category : m_categories)
        categories.push_back({ { "name", category.name }, { "apps", category.apps } });
    nlohmann::json use = nlohmann::json::object();
    for (const auto& [appkey, entry] : m_use)
        use[appkey] = { entry.score, entry.at };
    nlohmann::json store = {
        { "version", kFormatVersion },
        { "pins", m_pins },
        { "categories", std::move(categories) },
        { "recent", m_recent },
        { "hidden", m_hidden },
        { "use", std::move(use) },
        { "prefs", prefsJson(m_prefs) },
    };
    if (!m_updatedFrom.empty())
        store["updatedFrom"] = m_updatedFrom;
    store["search"] = m_searchPrefs.toJson();
    return store;
}

nlohmann::json Store::prefsJson(const UserPrefs& prefs)
{
    return { { UserPrefs::kMenuDensity, prefs.menuDensity },
             { UserPrefs::kAnimationFx, prefs.animationFx },
             { UserPrefs::kSaveExpAppCats, prefs.saveExpAppCats },
             { UserPrefs::kSaveLastMenu, prefs.saveLastMenu },
             { UserPrefs::kOneExpAppCat, prefs.oneExpAppCat } };
}

std::optional<Store> Store::fromJson(const nlohmann::json& value)
{
    if (!value.is_object() || !value.contains("version"))
        return std::nullopt;
    Store store;
    if (value.contains("pins")) {
        auto pins = stringList(value["pins"]);
        if (!pins)
            return std::nullopt;
        store.m_pins = std::move(*pins);
    }
    if (value.contains("recent")) {
        auto recent = stringList(value["recent"]);
        if (!recent)
            return std::nullopt;
        store.m_recent = std::move(*recent);
        if (store.m_recent.size() > kMaxRecent)
            store.m_recent.resize(kMaxRecent);
    }
    if (value.contains("hidden")) {
        auto hidden = stringList(value["hidden"]);
        if (!hidden)
            return std::nullopt;
        store.m_hidden = std::move(*hidden);
    }
    if (value.contains("categories")) {
        const auto& categories = value["categories"];
        if (!categories.is_array())
            return std::nullopt;
        std::set<std::string_view> names; // views into `value`
        for (const auto& item : categories) {
            if (!item.is_object() || !item.contains("name") || !item["name"].is_string())
                return std::nullopt;
            const auto& name = item["name"].get_ref<const std::string&>();
            auto apps =
                item.contains("apps") ? stringList(item["apps"]) : std::vector<std::string>{};
            // As createCategory: a name is not empty, and not taken.
            if (!apps || name.empty() || !names.insert(name).second)
                return std::nullopt;
            store.m_categories.push_back(AppCategory{ name, std::move(*apps) });
        }
    }
    // [score, time] per app; anything else is left out rather than losing the whole store.
    if (const auto use = value.find("use"); use != value.end() && use->is_object()) {
        for (const auto& [appkey, entry] : use->items()) {
            if (entry.is_array() && entry.size() == 2 && entry[0].is_number() &&
                entry[1].is_number_integer())
                store.m_use[appkey] = { entry[0].get<double>(), entry[1].get<std::int64_t>() };
        }
    }
    if (const auto from = value.find("updatedFrom"); from != value.end() && from->is_string())
        store.m_updatedFrom = from->get<std::string>();
    if (const auto search = value.find("search"); search != value.end())
        store.m_searchPrefs = SearchPrefs::fromJson(*search);
    if (value.contains("prefs")) {
        const auto& prefs = value["prefs"];
        if (!prefs.is_object() ||
            !readMember(prefs, UserPrefs::kMenuDensity, store.m_prefs.menuDensity) ||
            !readMember(prefs, UserPrefs::kAnimationFx, store.m_prefs.animationFx) ||
            !readMember(prefs, UserPrefs::kSaveExpAppCats, store.m_prefs.saveExpAppCats) ||
            !readMember(prefs, UserPrefs::kSaveLastMenu, store.m_prefs.saveLastMenu) ||
            !readMember(prefs, UserPrefs::kOneExpAppCat, store.m_prefs.oneExpAppCat))
            return std::nullopt;
    }
    return store;
}

} // namespace pomvar::srv
