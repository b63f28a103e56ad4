#include "pomvarsrv/model/IconCheck.h"

#include <sys/stat.h>

namespace pomvar::srv {

namespace {

bool isFile(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string folderOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
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
    // Stamped before the pass: a file deleted during it changes the stamp for the next one.
    m_folders.clear();
    for (const AppEntry& app : apps.all()) {
        for (const std::string* path : { &app.iconPath, &app.iconPath2x }) {
            const std::string folder = folderOf(*path);
            if (!m_folders.contains(folder))
                m_folders.emplace(folder, stampOf(folder));
        }
    }
    for (const AppEntry& app : apps.all()) {
        if (app.iconPath == m_fallback && app.iconPath2x == m_fallback2x)
            continue;
        if (!isFile(app.iconPath) || !isFile(app.iconPath2x))
            repaired.push_back(app.key);
    }
    for (const std::string& key : repaired)
        apps.setIcons(key, m_fallback, m_fallback2x);
    return repaired;
}

} // namespace pomvar::srv
