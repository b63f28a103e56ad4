#pragma once

#include "pomvarsrv/model/DesktopApp.h"

#include <QString>

#include <string>
#include <unordered_map>
#include <vector>

namespace pomvar::srv {

// Ranks the installed apps for a query. Every word of the query must match one of the app's
// fields, folded (TextFold) so that case and accents are ignored. The tiers, best first:
// exact name; name prefix; start of a word in the name; initials; substring of the name;
// keywords, generic name, program or desktop file id; comment; and last, for a query that
// matches nothing otherwise, a subsequence of the name (typing errors). Ties go to the more
// used app, then to the catalogue's order. The fields are folded and split once, in setApps().
class SearchIndex
{
public:
    using Usage = std::unordered_map<std::string, double>; // app key -> score, higher is more

    void setApps(const std::vector<DesktopApp>& apps);
    std::size_t size() const { return m_apps.size(); }

    // The positions (in setApps() order) of the apps matching `query`, best first.
    std::vector<std::size_t> rank(const QString& query, const Usage& usage = {}) const;

private:
    // The fields folded; a name's words separated by single spaces.
    struct Prepared
    {
        QString names[2]; // localised, untranslated
        QString initials[2];
        QString secondary; // keywords, generic name, program, id, each line ended by '\n'
        QString comment;
    };
    // A query folded and split once for all the apps.
    struct Query
    {
        QStringList words;
        QString phrase;       // the words joined by spaces
        QString spacedPhrase; // " " + phrase: the phrase at the start of a word of a name
        QString letters;      // the words run together
    };
    static int tierOf(const Prepared& app, const Query& query);

    std::vector<Prepared> m_apps;
    std::vector<std::string> m_keys;
    // Typing extends the query: only the apps the shorter query matched can match the longer
    // one (a substring, an initials prefix or a subsequence of it matched before), so only
    // they are ranked again.
    mutable QString m_lastPhrase;
    mutable std::vector<std::size_t> m_lastMatches;
};

} // namespace pomvar::srv
