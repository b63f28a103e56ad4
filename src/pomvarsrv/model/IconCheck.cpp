#include "pomvarsrv/model/IconCheck.h"

#include <dirent.h>
#include <string_view>
#include <sys/stat.h>
#include <unordered_set>

namespace pomvar::srv {

namespace {

// From this many icons in one changed folder on, listing it is cheaper than a stat for each.
constexpr std::size_t kListFrom = 64;

bool isFile(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string_view folderOf(std::string_view path)
{
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view(".") : path.substr(0, slash);
}

std::string_view nameOf(std::string_view path)
{
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// The names of the regular files in `folder`, links to them included.
std::unordered_set<std::string> filesIn(const std::string& folder)
{
    std::unordered_set<std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return names;
    while (const dirent* entry = ::readdir(dir)) {
        const bool file =
            entry->d_type == DT_REG || ((entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) &&
                                        isFile(folder + '/' + entry->d_name));
        if (file)
            names.emplace(entry->d_name);
    }
    ::closedir(dir);
    return names;
}

} // namespace

void IconCheck::setFallback(std::string path, std::string path2x)
{
    m_fallback = std::move(path);
    m_fallback2x = std::move(path2x);
    forget();
}

IconCheck::Stamp IconCheck::stampOf(const std::string& folder)
{
    struct stat info;
    if (::stat(folder.c_str(), &info) != 0)
        return {};
    return { info.st_dev,
             info.st_ino,
             info.st_mtim.tv_sec * 1'000'000'000LL + info.st_mtim.tv_nsec,
             info.st_ctim.tv_sec * 1'000'000'000LL + info.st_ctim.tv_nsec };
}

bool IconCheck::foldersUnchanged() const
{
    if (m_folders.empty())
        return false;
    for (const auto& [folder, stamp] : m_folders) {
        if (stampOf(folder) != stamp)
            return false;
    }
    return true;
}

std::vector<std::string> IconCheck::repair(InstalledApps& apps)
{
    std::vector<std::string> repaired;
    if (m_fallback.empty() || foldersUnchanged())
        return repaired;
    // The folders changed since the last check, with how many icons each holds. Stamped before
    // the files are looked at: a file deleted meanwhile changes the stamp for the next check.
    std::map<std::string, Stamp, std::less<>> folders;
    std::map<std::string_view, std::size_t> changed;
    for (const AppEntry& app : apps.all()) {
        for (const std::string* path : { &app.iconPath, &app.iconPath2x }) {
            const std::string_view folder = folderOf(*path);
            auto known = folders.find(folder);
            if (known == folders.end()) {
                known = folders.emplace(std::string(folder), stampOf(std::string(folder))).first;
                const auto before = m_folders.find(known->first);
                if (before == m_folders.end() || before->second != known->second)
                    changed.emplace(known->first, 0);
            }
            if (const auto count = changed.find(known->first); count != changed.end())
                ++count->second;
        }
    }
    m_folders = std::move(folders);
    if (changed.empty())
        return repaired;

    std::map<std::string_view, std::unordered_set<std::string>> listed;
    for (const auto& [folder, count] : changed) {
        if (count >= kListFrom)
            listed.emplace(folder, filesIn(std::string(folder)));
    }
    const auto exists = [&](const std::string& path) {
        const std::string_view folder = folderOf(path);
        if (!changed.contains(folder))
            return true;
        const auto names = listed.find(folder);
        if (names == listed.end())
            return isFile(path);
        return names->second.contains(std::string(nameOf(path)));
    };
    for (const AppEntry& app : apps.all()) {
        if (app.iconPath == m_fallback && app.iconPath2x == m_fallback2x)
            continue;
        if (!exists(app.iconPath) || !exists(app.iconPath2x))
            repaired.push_back(app.key);
    }
    for (const std::string& key : repaired)
        apps.setIcons(key, m_fallback, m_fallback2x);
    return repaired;
}

} // namespace pomvar::srv
