#pragma once

#include <QCollator>
#include <QLocale>
#include <QString>

#include <optional>
#include <vector>

namespace pomvar::srv {

// The order in which a person reads a list of names: case-insensitive, accents next to their
// base letter, numbers by value. The locale's collation where it has one; the C locale has
// none (Qt compares code points there), so a case- and accent-folded key stands in for it.
class NameOrder
{
public:
    explicit NameOrder(const QLocale& locale = QLocale().collation());

    // The positions of `names` in reading order; equal names keep their relative order.
    std::vector<std::size_t> sorted(const std::vector<QString>& names) const;

    // Folded (TextFold), each run of digits zero-padded to a fixed width so that a plain
    // comparison orders numbers by value.
    static QString foldedKey(const QString& name);

private:
    std::optional<QCollator> m_collator;
};

} // namespace pomvar::srv
