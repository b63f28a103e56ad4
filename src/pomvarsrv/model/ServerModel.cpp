#include "pomvarsrv/model/ServerModel.h"

#include "pomvarsrv/model/StoreFile.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace pomvar::srv {

ServerModel::ServerModel(StoreFile* file, Store store)
    : m_file(file)
    , m_store(std::move(store))
{}

void ServerModel::save()
{
    if (m_file)
        m_file->save(m_store);
}

void ServerModel::setApps(InstalledApps apps)
{
    m_apps = std::move(apps);
    m_iconCheck.forget();
    m_allApps.clear();
    if (m_ready)
        m_flags.appFolderModified = true;
    m_ready = true;
}

void ServerModel::setIcons(const std::vector<AppEntry>& apps)
{
    for (const auto& app : apps)
        m_apps.setIcons(app.key, app.iconPath, app.iconPath2x);
    if (!apps.empty()) {
        m_iconCheck.forget();
        m_allApps.clear();
        m_flags.appFolderModified = true;
    }
}

void ServerModel::setFallbackIcons(std::string path, std::string path2x)
{
    m_iconCheck.setFallback(std::move(path), std::move(path2x));
}

void ServerModel::setIconsMissingHandler(std::function<void()> iconsMissing)
{
    m_iconsMissing = std::move(iconsMissing);
}

void ServerModel::checkIcons()
{
    if (m_iconCheck.repair(m_apps).empty())
        return;
    m_allApps.clear();
    // The front end may hold a menu that names a file gone: it fetches every menu again.
    if (m_ready)
        m_flags.appFolderModified = true;
    if (m_iconsMissing)
        m_iconsMissing();
}

MenuDataStatus ServerModel::takeFlags()
{
    checkIcons();
    return std::exchange(m_flags, MenuDataStatus{});
}

std::string ServerModel::allAppsPayload()
{
    checkIcons();
    if (m_allApps.empty())
        m_allApps = MenuPayloads::allApps(m_apps, m_store);
    return m_allApps;
}

std::string ServerModel::recentAppsPayload()
{
    checkIcons();
    return MenuPayloads::recentApps(m_apps, m_store);
}

std::string ServerModel::takeMyAppsPayload()
{
    checkIcons();
    std::string payload = MenuPayloads::myApps(m_apps, m_store, m_renames);
    m_renames.clear();
    return payload;
}

bool ServerModel::togglePin(const std::string& appkey)
{
    if (!m_apps.contains(appkey))
        return false;
    m_store.togglePin(appkey);
    return pinsChanged(true);
}

std::optional<bool> ServerModel::toggleMember(const std::string& appkey,
                                              const std::string& category)
{
    if (!m_apps.contains(appkey))
        return std::nullopt;
    const auto isSet = m_store.toggleMember(appkey, category);
    appcatsChanged(isSet.has_value());
    return isSet;
}

bool ServerModel::createCategoryWith(const std::string& name, const std::string& appkey)
{
    if (!m_store.createCategory(name))
        return false;
    if (m_apps.contains(appkey))
        m_store.addMember(appkey, name);
    return appcatsChanged(true);
}

bool ServerModel::deleteCategory(const std::string& name)
{
    return appcatsChanged(m_store.deleteCategory(name));
}

bool ServerModel::renameCategory(const std::string& from, const std::string& to)
{
    if (!m_store.renameCategory(from, to))
        return false;
    m_renames.emplace_back(from, to);
    return appcatsChanged(true);
}

void ServerModel::noteLaunched(const std::string& appkey)
{
    m_store.pushRecent(appkey);
    m_store.noteUse(appkey, std::time(nullptr));
    m_flags.recentAppsModified = true;
    save();
}

void ServerModel::clearRecent()
{
    m_store.clearRecent();
    m_flags.recentAppsModified = true;
    save();
}

void ServerModel::restoreRecent(std::vector<std::string> recent)
{
    // Apps launched since the clearing stay first.
    std::vector<std::string> merged = m_store.recent();
    for (std::string& appkey : recent) {
        if (std::find(merged.begin(), merged.end(), appkey) == merged.end())
            merged.push_back(std::move(appkey));
    }
    m_store.setRecent(std::move(merged));
    m_flags.recentAppsModified = true;
    save();
}

bool ServerModel::setHidden(const std::string& appkey, bool hidden)
{
    if (hidden && !m_apps.contains(appkey))
        return false;
    if (!m_store.setHidden(appkey, hidden))
        return false;
    m_allApps.clear();
    save();
    // All Apps, Recent and My Apps all change, and with them the front end's categories of apps.
    m_flags.pinnedAppsModified = true;
    m_flags.appcatsModified = true;
    return true;
}

bool ServerModel::isShown(const std::string& appkey) const
{
    return m_apps.contains(appkey) && !m_store.isHidden(appkey);
}

void ServerModel::setPrefs(const UserPrefs& prefs)
{
    m_store.setPrefs(prefs);
    save();
}

void ServerModel::setSearchPrefs(const SearchPrefs& prefs)
{
    m_store.setSearchPrefs(prefs);
    save();
}

std::vector<std::string> ServerModel::installed(const std::vector<std::string>& keys) const
{
    std::vector<std::string> found;
    for (const auto& key : keys) {
        if (m_apps.contains(key))
            found.push_back(key);
    }
    return found;
}

bool ServerModel::pinsChanged(bool changed)
{
    if (changed) {
        m_allApps.clear();
        save();
        m_flags.pinnedAppsModified = true;
    }
    return changed;
}

bool ServerModel::appcatsChanged(bool changed)
{
    if (changed) {
        save();
        m_flags.appcatsModified = true;
    }
    return changed;
}

bool ServerModel::addToCategories(const std::vector<AppCategory>& categories)
{
    bool changed = false;
    for (const AppCategory& category : categories) {
        changed |= m_store.createCategory(category.name);
        for (const std::string& appkey : category.apps)
            changed |= m_apps.contains(appkey) && m_store.addMember(appkey, category.name);
    }
    return appcatsChanged(changed);
}

bool ServerModel::placePins(const std::vector<std::string>& keys, const std::string& before)
{
    return pinsChanged(m_store.placePins(installed(keys), before));
}

bool ServerModel::unpin(const std::vector<std::string>& keys)
{
    return pinsChanged(m_store.unpin(keys));
}

bool ServerModel::placeCategories(const std::vector<std::string>& names, const std::string& before)
{
    return appcatsChanged(m_store.placeCategories(names, before));
}

bool ServerModel::placeMembers(const std::string& category,
                               const std::vector<std::string>& keys,
                               const std::string& before)
{
    return appcatsChanged(m_store.placeMembers(category, installed(keys), before));
}

bool ServerModel::removeMembers(const std::string& category, const std::vector<std::string>& keys)
{
    return appcatsChanged(m_store.removeMembers(category, keys));
}

void ServerModel::noteUpdatedFrom(const std::string& version)
{
    m_store.setUpdatedFrom(version);
    save();
}

bool ServerModel::takeUpdateFinished()
{
    if (m_store.updatedFrom().empty())
        return false;
    m_store.setUpdatedFrom({});
    save();
    return true;
}

} // namespace pomvar::srv
