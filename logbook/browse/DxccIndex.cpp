#include "logbook/browse/DxccIndex.h"

#include "logbook/browse/DxccCall.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <algorithm>
#include <climits>

namespace {

QChar fold(QChar c)
{
    return c.unicode() < 128 ? c.toUpper() : c;
}

QString folded(const QString& text)
{
    QString key(text.size(), Qt::Uninitialized); // written in place: every bulk lookup folds twice
    std::transform(text.cbegin(), text.cend(), key.data(), fold);
    return key;
}

} // namespace

bool DxccIndex::like(const QString& text, const QString& pattern)
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

void DxccIndex::add(const QString& pattern, const DxccEntity& entity)
{
    const int index = int(rows_.size());
    rows_.append({ pattern, entity });
    if (pattern.isNull())
        return; // NULL matches nothing
    const bool prefix = pattern.endsWith(QLatin1Char('%'));
    const QString body = prefix ? pattern.chopped(1) : pattern;
    if (body.contains(QLatin1Char('%')) || body.contains(QLatin1Char('_'))) {
        others_.append(index);
        return;
    }
    const QString key = folded(body);
    QHash<QString, int>& map = prefix ? prefixes_ : exact_;
    if (!map.contains(key)) // the first row of equal patterns wins
        map.insert(key, index);
    if (prefix)
        longestPrefix_ = std::max(longestPrefix_, int(key.size()));
}

bool DxccIndex::load(const QString& connection, DbError* error)
{
    Recordset rs(connection);
    if (!rs.open(SqlText::DxccAll) || rs.fieldCount() < 3) {
        if (error)
            *error = rs.error();
        return false;
    }
    const int nr = rs.fieldIndex(QStringLiteral("DxccNr"));
    const int cq = rs.fieldIndex(QStringLiteral("CQZone"));
    const int itu = rs.fieldIndex(QStringLiteral("ITUZone"));
    const int cont = rs.fieldIndex(QStringLiteral("Cont"));
    const int n = rs.recordCount();
    for (int i = 0; i < n; ++i) {
        auto number = [&](int field) { return field < 0 ? 0 : rs.valueAt(i, field).toInt(); };
        const QVariant pattern = rs.valueAt(i, 1);
        add(pattern.isNull() ? QString() : pattern.toString(),
            { true, rs.valueAt(i, 2).toString(), number(nr), number(cq), number(itu),
                cont < 0 ? QString() : rs.valueAt(i, cont).toString() });
    }
    if (rs.hasError() && error)
        *error = rs.error();
    return !rs.hasError();
}

bool DxccIndex::isExactCall(const QString& text) const
{
    return exact_.contains(folded(text));
}

DxccEntity DxccIndex::find(const QString& callsign) const
{
    const QString text = DxccCall::normalised(callsign, [this](const QString& t) { return isExactCall(t); });
    return text.isEmpty() ? DxccEntity() : match(text);
}

DxccEntity DxccIndex::match(const QString& text) const
{
    QString key = folded(text);
    int best = exact_.value(key, INT_MAX);
    // Every prefix of the text, longest first, shortened in place.
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
        if (like(text, rows_[row].pattern)) {
            best = row;
            break;
        }
    }
    return best == INT_MAX ? DxccEntity() : rows_[best].entity;
}
