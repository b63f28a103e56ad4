#include "pomvarsrv/search/TextFold.h"

namespace pomvar::srv {

QString TextFold::fold(const QString& text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c == u'\u00df') // case folding keeps it a letter of its own
            folded.append(QStringLiteral("ss"));
        else
            folded.append(c);
    }
    return folded.toCaseFolded();
}

} // namespace pomvar::srv
