#include "logbook/adif/DxccMatcher.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <climits>

namespace {

QChar fold(QChar c)
{
    return c.unicode() < 128 ? c.toUpper() : c;
}

} // namespace

bool DxccMatcher::like(const QString& text, const QString& pattern)
{
    // Iterative matching with one back-track point for the last "%".
    qsizetype t = 0;
    qsizetype p = 0;
    qsizetype star = -1;
    qsizetype mark = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == QLatin1Char('%')) {
            star = p++;
            mark = t;
        } else if (p < pattern.size()
            && (pattern[p] == QLatin1Char('_') || fold(pattern[p]) == fold(text[t]))) {
            ++p;
            ++t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == QLatin1Char('%'))
        ++p;
    return p == pattern.size();
}

void DxccMatcher::add(const QString& pattern, const QString& entity)
{
    const int index = int(rows_.size());
    rows_.append({ pattern, entity });
    cache_.clear();
    const QString body = pattern.endsWith(QLatin1Char('%')) ? pattern.chopped(1) : pattern;
    const bool wild = body.contains(QLatin1Char('%')) || body.contains(QLatin1Char('_'));
    if (wild) {
        others_.append(index);
        return;
    }
    QString key;
    for (const QChar c : body)
        key += fold(c);
    QHash<QString, int>& map = pattern.endsWith(QLatin1Char('%')) ? prefixes_ : exact_;
    if (!map.contains(key)) // the first row of equal patterns wins
        map.insert(key, index);
    if (pattern.endsWith(QLatin1Char('%')))
        longestPrefix_ = std::max(longestPrefix_, int(key.size()));
}

bool DxccMatcher::load(const QString& connection, DbError* error)
{
    Recordset rs(connection);
    if (!rs.open(SqlText::DxccAll) || rs.fieldCount() < 3) {
        if (error)
            *error = rs.error();
        return false;
    }
    const int n = rs.recordCount();
    for (int i = 0; i < n; ++i)
        add(rs.valueAt(i, 1).toString(), rs.valueAt(i, 2).toString());
    if (rs.hasError() && error)
        *error = rs.error();
    return !rs.hasError();
}

QString DxccMatcher::entityFor(const QString& callsign)
{
    const auto cached = cache_.constFind(callsign);
    if (cached != cache_.cend())
        return *cached;
    QString key;
    for (const QChar c : callsign)
        key += fold(c);
    int best = exact_.value(key, INT_MAX);
    // Every prefix of the callsign, longest first, shortened in place.
    key.truncate(std::min(int(key.size()), longestPrefix_));
    for (;; key.chop(1)) {
        const auto it = prefixes_.constFind(key);
        if (it != prefixes_.cend())
            best = std::min(best, *it);
        if (key.isEmpty())
            break;
    }
    for (const int row : others_) {
        if (row >= best)
            break;
        if (like(callsign, rows_[row].pattern)) {
            best = row;
            break;
        }
    }
    const QString found = best == INT_MAX ? QString() : rows_[best].entity;
    cache_.insert(callsign, found);
    return found;
}
