#include "pomvarsrv/search/NameOrder.h"

#include <algorithm>
#include <numeric>

namespace pomvar::srv {

NameOrder::NameOrder(const QLocale& locale)
    : m_collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale)
{
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    m_collator.setNumericMode(true);
}

std::vector<std::size_t> NameOrder::sorted(const std::vector<QString>& names) const
{
    std::vector<QCollatorSortKey> keys;
    keys.reserve(names.size());
    for (const QString& name : names)
        keys.push_back(m_collator.sortKey(name));
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), std::size_t{ 0 });
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return keys[a].compare(keys[b]) < 0;
    });
    return order;
}

} // namespace pomvar::srv
