#include "pomvarsrv/search/SearchIndex.h"

#include "pomvarsrv/search/TextFold.h"

#include <algorithm>
#include <numeric>

namespace pomvar::srv {

namespace {

enum Tier
{
    exactName,
    namePrefix,
    wordStart,
    initials,
    nameSubstring,
    secondaryField,
    comment,
    subsequence,
    noMatch,
};

// Folded, and split into words at anything that is not a letter or a digit.
QStringList words(const QString& text)
{
    QStringList found;
    QString word;
    for (const QChar c : TextFold::fold(text)) {
        if (c.isLetterOrNumber()) {
            word.append(c);
        } else if (!word.isEmpty()) {
            found.append(word);
            word.clear();
        }
    }
    if (!word.isEmpty())
        found.append(word);
    return found;
}

QString initialsOf(const QStringList& nameWords)
{
    QString letters;
    for (const QString& word : nameWords)
        letters.append(word.front());
    return letters;
}

bool isSubsequence(QStringView needle, QStringView haystack)
{
    qsizetype at = 0;
    for (const QChar c : haystack) {
        if (at < needle.size() && needle[at] == c)
            ++at;
    }
    return at == needle.size();
}

} // namespace

void SearchIndex::setApps(const std::vector<DesktopApp>& apps)
{
    m_apps.clear();
    m_keys.clear();
    m_lastPhrase.clear();
    m_lastMatches.clear();
    m_apps.reserve(apps.size());
    for (const DesktopApp& app : apps) {
        m_keys.push_back(app.id);
        Prepared prepared;
        const QString name = QString::fromStdString(app.name);
        const QString* names[] = { &name, &app.untranslatedName };
        for (int i = 0; i < 2; ++i) {
            const QStringList nameWords = words(*names[i]);
            prepared.names[i] = nameWords.join(u' ');
            prepared.initials[i] = initialsOf(nameWords);
        }
        QStringList secondary = words(app.genericName);
        for (const QString& keyword : app.keywords)
            secondary += words(keyword);
        secondary += words(app.program);
        secondary += words(QString::fromStdString(app.id));
        prepared.secondary = secondary.join(u'\n') + u'\n';
        prepared.comment = words(app.comment).join(u' ');
        m_apps.push_back(std::move(prepared));
    }
}

int SearchIndex::tierOf(const Prepared& app, const Query& query)
{
    const QString& phrase = query.phrase;
    const QString& letters = query.letters;
    bool outsideComment = true;
    for (const QString& word : query.words) {
        bool inNames = false;
        for (int i = 0; i < 2 && !inNames; ++i)
            inNames = app.names[i].contains(word) ||
                      (word.size() > 1 && app.initials[i].startsWith(word));
        if (inNames || app.secondary.contains(word))
            continue;
        if (!app.comment.contains(word))
            // Typing errors: the query's letters in order in the name, when a word matches
            // nothing.
            return isSubsequence(letters, app.names[0]) ? subsequence : noMatch;
        outsideComment = false;
    }
    int best = noMatch;
    for (int i = 0; i < 2; ++i) {
        const QString& name = app.names[i];
        if (name.isEmpty())
            continue;
        if (name == phrase)
            return exactName;
        if (name.startsWith(phrase))
            best = std::min<int>(best, namePrefix);
        else if (name.contains(query.spacedPhrase))
            best = std::min<int>(best, wordStart);
        else if (letters.size() > 1 && app.initials[i].startsWith(letters))
            best = std::min<int>(best, initials);
        else if (name.contains(phrase))
            best = std::min<int>(best, nameSubstring);
    }
    if (best != noMatch)
        return best;
    return outsideComment ? secondaryField : comment;
}

std::vector<std::size_t> SearchIndex::rank(const QString& query, const Usage& usage) const
{
    const QStringList queryWords = words(query);
    if (queryWords.isEmpty())
        return {};
    const QString phrase = queryWords.join(u' ');
    const Query prepared{ queryWords, phrase, u' ' + phrase, queryWords.join(QString()) };
    struct Hit
    {
        int tier;
        double used;
        std::size_t position;
    };
    const bool narrowing = !m_lastPhrase.isEmpty() && phrase.startsWith(m_lastPhrase);
    std::vector<std::size_t> everyApp;
    if (!narrowing) {
        everyApp.resize(m_apps.size());
        std::iota(everyApp.begin(), everyApp.end(), std::size_t{ 0 });
    }
    const std::vector<std::size_t>& candidates = narrowing ? m_lastMatches : everyApp;
    std::vector<Hit> hits;
    for (const std::size_t i : candidates) {
        const int tier = tierOf(m_apps[i], prepared);
        if (tier == noMatch)
            continue;
        const auto used = usage.find(m_keys[i]);
        hits.push_back({ tier, used == usage.end() ? 0.0 : used->second, i });
    }
    std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) {
        if (a.tier != b.tier)
            return a.tier < b.tier;
        if (a.used != b.used)
            return a.used > b.used;
        return a.position < b.position;
    });
    std::vector<std::size_t> order;
    order.reserve(hits.size());
    for (const Hit& hit : hits)
        order.push_back(hit.position);
    m_lastPhrase = phrase;
    m_lastMatches = order;
    std::sort(m_lastMatches.begin(), m_lastMatches.end()); // catalogue order
    return order;
}

} // namespace pomvar::srv
