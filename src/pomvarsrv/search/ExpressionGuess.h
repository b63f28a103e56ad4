#pragma once

#include <QString>

namespace pomvar::srv {

// Whether the search's text looks like something to calculate: digits with an operator, a
// function's parentheses or a conversion ("to", "in"). A word or an app's name does not ("Firefox",
// "2048"); a name that merely looks like one ("7-Zip") is left for the calculator to refuse.
class ExpressionGuess
{
public:
    static bool looksLikeExpression(const QString& text);
};

} // namespace pomvar::srv
