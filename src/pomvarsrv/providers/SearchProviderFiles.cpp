#include "pomvarsrv/providers/SearchProviderFiles.h"

#include <QDir>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <map>
#include <memory>

namespace pomvar::srv {

namespace {

constexpr const char* kGroup = "Shell Search Provider";

template <typename T>
struct GFree
{
    void operator()(T* pointer) const { g_free(pointer); }
};
using GText = std::unique_ptr<gchar, GFree<gchar>>;

QString stringOf(GKeyFile* file, const char* key)
{
    const GText value(g_key_file_get_string(file, kGroup, key, nullptr));
    return value ? QString::fromUtf8(value.get()) : QString();
}

// Nothing when the file is not a provider of version 2 whose app is installed.
std::optional<SearchProvider> read(const QString& path)
{
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_free)> file(g_key_file_new(),
                                                                     &g_key_file_free);
    if (!g_key_file_load_from_file(
            file.get(), QFile::encodeName(path).constData(), G_KEY_FILE_NONE, nullptr) ||
        g_key_file_get_integer(file.get(), kGroup, "Version", nullptr) != 2)
        return std::nullopt;
    SearchProvider provider{ stringOf(file.get(), "DesktopId"),
                             {},
                             stringOf(file.get(), "BusName"),
                             stringOf(file.get(), "ObjectPath"),
                             !g_key_file_get_boolean(
                                 file.get(), kGroup, "DefaultDisabled", nullptr) };
    if (provider.desktopId.isEmpty() || provider.busName.isEmpty() || provider.objectPath.isEmpty())
        return std::nullopt;
    const std::unique_ptr<GDesktopAppInfo, decltype(&g_object_unref)> app(
        g_desktop_app_info_new(provider.desktopId.toUtf8().constData()), &g_object_unref);
    if (!app)
        return std::nullopt;
    provider.name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(app.get())));
    return provider;
}

} // namespace

std::vector<SearchProvider> SearchProviderFiles::installed()
{
    std::map<QString, QString> files; // by file name: the first folder's
    for (const QString& folder :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        const QDir providers(folder + QStringLiteral("/gnome-shell/search-providers"));
        for (const QString& name : providers.entryList({ QStringLiteral("*.ini") }, QDir::Files))
            files.emplace(name, providers.filePath(name));
    }
    std::vector<SearchProvider> found;
    for (const auto& [name, path] : files)
        if (auto provider = read(path))
            found.push_back(std::move(*provider));
    return found;
}

} // namespace pomvar::srv
