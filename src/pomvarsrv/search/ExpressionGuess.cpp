#include "pomvarsrv/search/ExpressionGuess.h"

#include <QRegularExpression>

namespace pomvar::srv {

bool ExpressionGuess::looksLikeExpression(const QString& text)
{
    static const QRegularExpression digit(QStringLiteral("\\d"));
    // An operator after something (a sign alone makes no expression), parentheses, a conversion.
    static const QRegularExpression operation(
        QStringLiteral("(\\S\\s*[-+*/^×÷%!=<>])|[()]|\\s(to|in)\\s"),
        QRegularExpression::CaseInsensitiveOption);
    const QString trimmed = text.trimmed();
    return trimmed.contains(digit) && trimmed.contains(operation);
}

} // namespace pomvar::srv
