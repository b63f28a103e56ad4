// GIO before Qt: its headers use names that Qt's keywords would break.
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include "pomvarsrv/catalogue/DesktopEntries.h"

#include <map>

namespace pomvar::srv {

namespace {

using Files = std::map<std::string, std::string>; // id -> file

// The entries of one applications folder and its subfolders, as GIO names them. Two files of
// one id in the same folder: the one read last wins, as in GIO's table.
void addFolder(const std::string& folder, const std::string& prefix, Files& files)
{
    GDir* dir = g_dir_open(folder.c_str(), 0, nullptr);
    if (!dir)
        return;
    while (const char* name = g_dir_read_name(dir)) {
        const std::string path = folder + '/' + name;
        if (g_str_has_suffix(name, ".desktop"))
            files.insert_or_assign(prefix + name, path);
        else if (g_file_test(path.c_str(), G_FILE_TEST_IS_DIR))
            addFolder(path, prefix + name + '-', files);
    }
    g_dir_close(dir);
}

std::string applicationsOf(const char* dataDir)
{
    gchar* path = g_build_filename(dataDir, "applications", nullptr);
    std::string folder(path);
    g_free(path);
    return folder;
}

} // namespace

void DesktopEntries::forEach(const Visit& visit)
{
    // GIO's change monitor reports one change, then waits until GIO reads its folders again,
    // which any look-up by id does. First, so that a change made while reading is reported.
    if (GDesktopAppInfo* none = g_desktop_app_info_new(""))
        g_object_unref(none);

    Files files;
    const auto addData = [&files](const char* dataDir) {
        Files folder;
        addFolder(applicationsOf(dataDir), {}, folder);
        // An id of a folder before masks this one's.
        files.merge(folder);
    };
    addData(g_get_user_data_dir());
    for (const char* const* dataDir = g_get_system_data_dirs(); *dataDir; ++dataDir)
        addData(*dataDir);

    for (const auto& [id, path] : files) {
        GDesktopAppInfo* entry = g_desktop_app_info_new_from_filename(path.c_str());
        if (!entry)
            continue;
        if (!g_desktop_app_info_get_is_hidden(entry))
            visit(id, entry);
        g_object_unref(entry);
    }
}

} // namespace pomvar::srv
