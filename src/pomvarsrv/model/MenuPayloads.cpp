#include "pomvarsrv/model/MenuPayloads.h"

#include "pomvarsrv/model/JsonText.h"
#include "wire/Protocol.h"

#include <unordered_set>
#include <utility>

namespace pomvar::srv {

namespace {

class PinSet
{
public:
    explicit PinSet(const Store& store)
        : m_pins(store.pins().begin(), store.pins().end())
    {}
    bool contains(const std::string& key) const { return m_pins.count(key) != 0; }

private:
    std::unordered_set<std::string> m_pins;
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

template <typename Keys>
void appendInstalled(std::string& out,
                     const InstalledApps& apps,
                     const Keys& keys,
                     const PinSet* pins)
{
    out += '[';
    bool first = true;
    for (const auto& key : keys) {
        const AppEntry* app = apps.find(key);
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
    const PinSet pins(store);
    std::string out;
    out.reserve(apps.size() * 360 + 2);
    out += '[';
    for (std::size_t i = 0; i < apps.all().size(); ++i) {
        const AppEntry& app = apps.all()[i];
        if (i > 0)
            out += ',';
        const bool pinned = pins.contains(app.key);
        appendApp(out, app, &pinned);
    }
    out += ']';
    return out;
}

std::string MenuPayloads::recentApps(const InstalledApps& apps, const Store& store)
{
    const PinSet pins(store);
    std::string out;
    appendInstalled(out, apps, store.recent(), &pins);
    return out;
}

std::string MenuPayloads::myApps(const InstalledApps& apps,
                                 const Store& store,
                                 const std::vector<Rename>& renames)
{
    const PinSet pins(store);
    std::string out = "{";
    JsonText::appendKey(out, field::pinnedapps);
    appendInstalled(out, apps, store.pins(), nullptr);
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
        appendInstalled(out, apps, category.apps, &pins);
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
