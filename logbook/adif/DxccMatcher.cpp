#include "logbook/adif/DxccMatcher.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

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
    if (pattern.isEmpty())
        return; // matches only an empty callsign
    const QChar first = pattern[0];
    if (first == QLatin1Char('%') || first == QLatin1Char('_'))
        wild_.append(index);
    else
        byFirst_[fold(first)].append(index);
    cache_.clear();
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
    QString found;
    if (!callsign.isEmpty()) {
        static const QList<int> none;
        const auto it = byFirst_.constFind(fold(callsign[0]));
        const QList<int>& a = it == byFirst_.cend() ? none : *it;
        // Both candidate lists in table order.
        qsizetype i = 0;
        qsizetype j = 0;
        while (i < a.size() || j < wild_.size()) {
            const int row = j >= wild_.size() || (i < a.size() && a[i] < wild_[j]) ? a[i++] : wild_[j++];
            if (like(callsign, rows_[row].pattern)) {
                found = rows_[row].entity;
                break;
            }
        }
    }
    cache_.insert(callsign, found);
    return found;
}
