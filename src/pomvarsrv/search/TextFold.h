#pragma once

#include <QString>

namespace pomvar::srv {

// Text as the ordering of names and the search compare it: decomposed, combining marks dropped
// (accents next to their base letter), case-folded, and "ß" read as "ss".
class TextFold
{
public:
    static QString fold(const QString& text);
};

} // namespace pomvar::srv
