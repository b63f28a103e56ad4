#include "pomvarsrv/search/NameOrder.h"

#include "pomvarsrv/search/TextFold.h"

#include <algorithm>
#include <numeric>

namespace pomvar::srv {

namespace {

// Wider than any run of digits in an app's name is likely to be; longer runs still sort, by
// their leading digits.
constexpr qsizetype kDigitWidth = 12;

} // namespace

NameOrder::NameOrder(const QLocale& locale)
{
    if (locale.language() == QLocale::C)
        return;
    m_collator.emplace(locale);
    m_collator->setCaseSensitivity(Qt::CaseInsensitive);
    m_collator->setNumericMode(true);
}

QString NameOrder::foldedKey(const QString& name)
{
    const QString folded = TextFold::fold(name);
    QString key;
    key.reserve(folded.size() + kDigitWidth);
    qsizetype digitsFrom = -1;
    const auto padDigits = [&] {
        if (digitsFrom >= 0 && key.size() - digitsFrom < kDigitWidth)
            key.insert(digitsFrom, QString(kDigitWidth - (key.size() - digitsFrom), u'0'));
        digitsFrom = -1;
    };
    for (const QChar c : folded) {
        if (!c.isDigit()) {
            padDigits();
            key.append(c);
            continue;
        }
        if (digitsFrom < 0)
            digitsFrom = key.size();
        key.append(QChar(u'0' + c.digitValue()));
    }
    padDigits();
    return key;
}

std::vector<std::size_t> NameOrder::sorted(const std::vector<QString>& names) const
{
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), std::size_t{ 0 });
    if (m_collator) {
        std::vector<QCollatorSortKey> keys;
        keys.reserve(names.size());
        for (const QString& name : names)
            keys.push_back(m_collator->sortKey(name));
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return keys[a].compare(keys[b]) < 0;
        });
        return order;
    }
    std::vector<QString> keys;
    keys.reserve(names.size());
    for (const QString& name : names)
        keys.push_back(foldedKey(name));
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return keys[a] < keys[b];
    });
    return order;
}

} // namespace pomvar::srv
