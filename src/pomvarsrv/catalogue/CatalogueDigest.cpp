#include "pomvarsrv/catalogue/CatalogueDigest.h"

#include "pomvarsrv/catalogue/CatalogueCache.h"

#include <algorithm>
#include <numeric>

namespace pomvar::srv {

void CatalogueDigest::add(const AppEntry& app, const DesktopApp& entry)
{
    m_hash.addData(CatalogueCache::record(app, entry));
}

QByteArray CatalogueDigest::of(const std::vector<AppEntry>& apps,
                               const std::vector<DesktopApp>& entries)
{
    if (apps.size() != entries.size())
        return {};
    std::vector<std::size_t> byKey(apps.size());
    std::iota(byKey.begin(), byKey.end(), 0);
    std::sort(byKey.begin(), byKey.end(), [&apps](std::size_t a, std::size_t b) {
        return apps[a].key < apps[b].key;
    });
    CatalogueDigest digest;
    for (const std::size_t i : byKey)
        digest.add(apps[i], entries[i]);
    return digest.result();
}

} // namespace pomvar::srv
