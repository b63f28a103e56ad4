#pragma once

#include "pomvarsrv/model/IconCheck.h"
#include "pomvarsrv/model/InstalledApps.h"
#include "pomvarsrv/model/MenuPayloads.h"
#include "pomvarsrv/model/Store.h"
#include "wire/Records.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pomvar::srv {

class StoreFile;

// The server's state: the installed apps, the user's store, the modified flags and the pending
// category renames. Every change to the store is saved at once and sets the flags it names.
class ServerModel
{
public:
    // Without a file nothing is saved.
    explicit ServerModel(StoreFile* file = nullptr, Store store = {});

    const Store& store() const { return m_store; }
    // Replaces the store as read from its file (nothing is saved).
    void setStore(Store store) { m_store = std::move(store); }
    const InstalledApps& apps() const { return m_apps; }
    bool isReady() const { return m_ready; }

    // The first list makes the server ready; a later one sets appFolderModified.
    void setApps(InstalledApps apps);
    // Better icons for some apps (rendered in the background): the menus must be fetched again.
    void setIcons(const std::vector<AppEntry>& apps);

    // Before a menu is sent, its icon files are checked (IconCheck): a missing one is replaced
    // by the fallback, the menus are to be fetched again (appFolderModified) and
    // `iconsMissing` is told, to render them again.
    void setFallbackIcons(std::string path, std::string path2x);
    void setIconsMissingHandler(std::function<void()> iconsMissing);

    // Reports the flags and clears them.
    MenuDataStatus takeFlags();

    std::string allAppsPayload();
    std::string recentAppsPayload();
    // Carries the renames made since the last My Apps payload, which are then forgotten.
    std::string takeMyAppsPayload();

    // Each returns false when nothing changed (unknown app or category, refused name).
    bool togglePin(const std::string& appkey);
    std::optional<bool> toggleMember(const std::string& appkey, const std::string& category);
    bool createCategoryWith(const std::string& name, const std::string& appkey);
    bool deleteCategory(const std::string& name);
    bool renameCategory(const std::string& from, const std::string& to);
    void noteLaunched(const std::string& appkey);
    void clearRecent();
    // Gives Recent back as it was before a clearing, after the apps launched since.
    void restoreRecent(std::vector<std::string> recent);
    // Hides an installed app from Pomvar's menus and search, or shows it again: every menu is to
    // be fetched again. False when nothing changed.
    bool setHidden(const std::string& appkey, bool hidden);
    // Installed and not hidden.
    bool isShown(const std::string& appkey) const;
    void setPrefs(const UserPrefs& prefs);
    void setSearchPrefs(const SearchPrefs& prefs);
    // Files the apps into their categories, creating the ones missing; false when nothing changed.
    bool addToCategories(const std::vector<AppCategory>& categories);

    // The update being made replaces `version`: kept in the store for the restarted server.
    void noteUpdatedFrom(const std::string& version);
    // True once after an update, when the front end asks first; then forgotten.
    bool takeUpdateFinished();

    // The organizer's changes (see Store); apps that are not installed are neither pinned nor
    // filed. Each returns false when nothing changed.
    bool placePins(const std::vector<std::string>& keys, const std::string& before);
    bool unpin(const std::vector<std::string>& keys);
    bool placeCategories(const std::vector<std::string>& names, const std::string& before);
    bool placeMembers(const std::string& category,
                      const std::vector<std::string>& keys,
                      const std::string& before);
    bool removeMembers(const std::string& category, const std::vector<std::string>& keys);

private:
    void save();
    void checkIcons();
    std::vector<std::string> installed(const std::vector<std::string>& keys) const;
    // After a change to the store: saves it, then raises the flag the front end reads. Returns
    // `changed`, and does nothing when it is false.
    bool pinsChanged(bool changed);
    bool appcatsChanged(bool changed);

    StoreFile* m_file;
    Store m_store;
    InstalledApps m_apps;
    bool m_ready = false;
    MenuDataStatus m_flags;
    std::vector<MenuPayloads::Rename> m_renames;
    IconCheck m_iconCheck;
    std::function<void()> m_iconsMissing;
    // All Apps changes only with the apps, their icons and the pins: it is kept between requests.
    mutable std::string m_allApps;
};

} // namespace pomvar::srv
