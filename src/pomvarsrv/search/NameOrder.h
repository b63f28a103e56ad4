#pragma once

#include <QCollator>
#include <QLocale>
#include <QString>

#include <vector>

namespace pomvar::srv {

// The order in which a person reads a list of names: case-insensitive, accents next to their
// base letter, numbers by value. Always an ICU collation: the locale's own, or for the C locale
// (where Qt would compare code points) ICU's root order, through English, which keeps it as is.
class NameOrder
{
public:
    explicit NameOrder(const QLocale& locale = QLocale().collation());

    // The positions of `names` in reading order; equal names keep their relative order.
    std::vector<std::size_t> sorted(const std::vector<QString>& names) const;

private:
    QCollator m_collator;
};

} // namespace pomvar::srv
