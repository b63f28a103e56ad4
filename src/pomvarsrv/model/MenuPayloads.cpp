#include "pomvarsrv/model/MenuPayloads.h"

#include "pomvarsrv/model/JsonText.h"
#include "wire/Protocol.h"

#include <unordered_set>
#include <utility>

namespace pomvar::srv {

namespace {

class KeySet
{
public:
    explicit KeySet(const std::vector<std::string>& keys)
        : m_keys(keys.begin(), keys.end())
    {}
    bool contains(const std::string& key) const { return m_keys.count(key) != 0; }

private:
    std::unordered_set<std::string> m_keys;
};

// What the menus show of the installed apps: all but the hidden ones, with their pin marks.
struct Shown
{
    Shown(const InstalledApps& apps, const Store& store)
        : apps(apps)
        , hidden(store.hidden())
        , pins(store.pins())
    {}
    const AppEntry* find(const std::string& key) const
    {
        return hidden.contains(key) ? nullptr : apps.find(key);
    }

    const InstalledApps& apps;
    const KeySet hidden;
    const KeySet pins;
};

// {"appkey":..,"name":..,"bundleid":..,"iconpath":..,"iconpath2x":..[,"pinned":..]}
void appendApp(std::string& out, const AppEntry& app, const bool* pinned)
{
    static const std::pair<const char*, std::string AppEntry::*> kFields[] = {
        { field::appkey, &AppEntry::key },
        { field::name, &AppEntry::name },
        { field::bundleid, &AppEntry::bundleId },
        { field::iconpath, &AppEntry::iconPath },
        { field::iconpath2x, &AppEntry::iconPath2x },
    };
    out += '{';
    for (const auto& [key, field] : kFields) {
        if (out.back() != '{')
            out += ',';
        JsonText::appendKey(out, key);
        JsonText::appendString(out, app.*field);
    }
    if (pinned) {
        out += ',';
        JsonText::appendKey(out, field::pinned);
        out += *pinned ? "true" : "false";
    }
    out += '}';
}

// The shown apps among `keys`, with their pin marks unless `marked` is false.
void appendShown(std::string& out,
                 const Shown& shown,
                 const std::vector<std::string>& keys,
                 bool marked)
{
    const KeySet* pins = marked ? &shown.pins : nullptr;
    out += '[';
    bool first = true;
    for (const auto& key : keys) {
        const AppEntry* app = shown.find(key);
        if (!app)
            continue;
        if (!first)
            out += ',';
        first = false;
        const bool pinned = pins && pins->contains(key);
        appendApp(out, *app, pins ? &pinned : nullptr);
    }
    out += ']';
}

} // namespace

std::string MenuPayloads::allApps(const InstalledApps& apps, const Store& store)
{
    const KeySet pins(store.pins());
    const KeySet hidden(store.hidden());
    std::string out;
    out.reserve(apps.size() * 360 + 2);
    out += '[';
    for (const AppEntry& app : apps.all()) {
        if (hidden.contains(app.key))
            continue;
        if (out.size() > 1)
            out += ',';
        const bool pinned = pins.contains(app.key);
        appendApp(out, app, &pinned);
    }
    out += ']';
    return out;
}

std::string MenuPayloads::recentApps(const InstalledApps& apps, const Store& store)
{
    std::string out;
    appendShown(out, Shown(apps, store), store.recent(), true);
    return out;
}

std::string MenuPayloads::myApps(const InstalledApps& apps,
                                 const Store& store,
                                 const std::vector<Rename>& renames)
{
    const Shown shown(apps, store);
    std::string out = "{";
    JsonText::appendKey(out, field::pinnedapps);
    appendShown(out, shown, store.pins(), false);
    out += ',';
    JsonText::appendKey(out, field::appcats);
    out += '[';
    for (std::size_t i = 0; i < store.categories().size(); ++i) {
        if (i > 0)
            out += ',';
        JsonText::appendString(out, store.categories()[i].name);
    }
    out += "],";
    JsonText::appendKey(out, field::appcatapps);
    out += '{';
    for (std::size_t i = 0; i < store.categories().size(); ++i) {
        const AppCategory& category = store.categories()[i];
        if (i > 0)
            out += ',';
        JsonText::appendKey(out, category.name);
        appendShown(out, shown, category.apps, true);
    }
    out += "},";
    JsonText::appendKey(out, field::renamedAppcats);
    out += '[';
    for (std::size_t i = 0; i < renames.size(); ++i) {
        if (i > 0)
            out += ',';
        out += '{';
        JsonText::appendKey(out, field::renamedOld);
        JsonText::appendString(out, renames[i].first);
        out += ',';
        JsonText::appendKey(out, field::renamedNew);
        JsonText::appendString(out, renames[i].second);
        out += '}';
    }
    out += "]}";
    return out;
}

} // namespace pomvar::srv
