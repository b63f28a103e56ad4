#pragma once

#include <QString>

namespace pomvar::srv {

// One of the desktop's search providers, as its file in share/gnome-shell/search-providers
// describes it: an app that answers searches over D-Bus (org.gnome.Shell.SearchProvider2).
struct SearchProvider
{
    QString desktopId; // the app's desktop file id, which names the provider
    QString name;      // the app's name
    QString busName;
    QString objectPath;
    bool enabledByDefault = true;

    bool operator==(const SearchProvider&) const = default;
};

} // namespace pomvar::srv
