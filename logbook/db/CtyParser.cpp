#include "logbook/db/CtyParser.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

// "EB8(33)[36]" -> "EB8" with CQ 33, ITU 36; position and UTC overrides (<>, ~~) are dropped.
CtyItem item(const QString& raw, const CtyPlace& entity)
{
    static const QRegularExpression overrides(
        QStringLiteral(R"(\(([^)]*)\)|\[([^\]]*)\]|\{([^}]*)\}|<[^>]*>|~[^~]*~)"));
    CtyItem out;
    out.place = entity;
    QString text = raw;
    for (auto it = overrides.globalMatch(raw); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (m.capturedLength(1) > 0)
            out.place.cqZone = m.captured(1).toInt();
        else if (m.capturedLength(2) > 0)
            out.place.ituZone = m.captured(2).toInt();
        else if (m.capturedLength(3) > 0)
            out.place.continent = m.captured(3).trimmed();
    }
    text.remove(overrides);
    out.text = text.trimmed().toUpper();
    return out;
}

struct PrefixIndex {
    QHash<QString, const DxccRow*> exact;
    QHash<QString, const DxccRow*> prefix;
    int longest = 0;

    explicit PrefixIndex(const QList<DxccRow>& prefixRows)
    {
        for (const DxccRow& r : prefixRows) {
            const QString p = r.pattern.chopped(1);
            if (!prefix.contains(p))
                prefix.insert(p, &r);
            longest = std::max(longest, int(p.size()));
        }
    }

    const DxccRow* lookup(const QString& call) const
    {
        const QString c = call.toUpper();
        if (const auto it = exact.constFind(c); it != exact.cend())
            return *it;
        for (int n = std::min(longest, int(c.size())); n > 0; --n) {
            if (const auto it = prefix.constFind(c.left(n)); it != prefix.cend())
                return *it;
        }
        return nullptr;
    }
};

QList<DxccRow> rowsOf(const CtyEntity& e, const QList<CtyItem>& items, bool exact)
{
    QList<DxccRow> out;
    for (const CtyItem& i : items)
        out.append({ exact ? i.text : i.text + QLatin1Char('%'), e.dxccName, e.primaryPrefix, i.place });
    return out;
}

bool sameEntity(const DxccRow* a, const DxccRow& b)
{
    return a && a->country == b.country && a->place == b.place;
}

} // namespace

QList<CtyEntity> CtyParser::parse(const QString& csv, QString* error)
{
    QList<CtyEntity> entities;
    QStringList bad;
    const QStringList lines = csv.split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        QString line = raw.trimmed();
        if (line.isEmpty())
            continue;
        const QStringList f = line.split(QLatin1Char(','));
        bool numberOk = false, cqOk = false, ituOk = false;
        CtyEntity e;
        if (f.size() == 10) {
            e.place = { f[2].toInt(&numberOk), f[4].toInt(&cqOk), f[5].toInt(&ituOk), f[3].trimmed() };
            e.name = f[1].trimmed();
        }
        if (!numberOk || !cqOk || !ituOk || e.name.isEmpty() || !f[9].trimmed().endsWith(QLatin1Char(';'))) {
            bad << line.left(40);
            continue;
        }
        e.dxccName = e.name;
        e.primaryPrefix = f[0].trimmed();
        if (e.primaryPrefix.startsWith(QLatin1Char('*'))) {
            e.waeOnly = true;
            e.primaryPrefix.remove(0, 1);
        }
        const QStringList items = f[9].trimmed().chopped(1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& text : items) {
            const bool exact = text.startsWith(QLatin1Char('='));
            const CtyItem i = item(exact ? text.mid(1) : text, e.place);
            if (!i.text.isEmpty())
                (exact ? e.exactCalls : e.prefixes) << i;
        }
        entities << e;
    }
    // A WAE-only entity counts for the DXCC entity with its number. Where the file splits one
    // entity into "European X" (WAE) and "Asiatic X", the DXCC entity is "X".
    QHash<int, QString> dxccNames;
    for (const CtyEntity& e : entities) {
        if (!e.waeOnly && !dxccNames.contains(e.place.dxccNr))
            dxccNames.insert(e.place.dxccNr, e.name);
    }
    for (const CtyEntity& e : entities) {
        const QString asiatic = QStringLiteral("Asiatic ");
        const QString& own = dxccNames[e.place.dxccNr];
        if (e.waeOnly && e.name.startsWith(QStringLiteral("European ")) && own.startsWith(asiatic)
            && e.name.mid(9) == own.mid(asiatic.size()))
            dxccNames[e.place.dxccNr] = own.mid(asiatic.size());
    }
    for (CtyEntity& e : entities)
        e.dxccName = dxccNames.value(e.place.dxccNr, e.name);
    if (error)
        *error = bad.isEmpty()
            ? QString()
            : QStringLiteral("Skipped malformed lines: ") + bad.join(QStringLiteral(" | "));
    return entities;
}

QList<DxccRow> CtyParser::toRows(const QList<CtyEntity>& entities)
{
    QList<DxccRow> exact;
    QList<DxccRow> prefixes;
    QSet<QString> seen;
    for (const CtyEntity& e : entities) {
        for (const DxccRow& r : rowsOf(e, e.prefixes, false)) {
            if (!seen.contains(r.pattern)) {
                seen.insert(r.pattern);
                prefixes << r;
            }
        }
    }
    const PrefixIndex byPrefix(prefixes);
    for (const CtyEntity& e : entities) {
        for (const DxccRow& r : rowsOf(e, e.exactCalls, true)) {
            if (seen.contains(r.pattern) || sameEntity(byPrefix.lookup(r.pattern), r))
                continue;
            seen.insert(r.pattern);
            exact << r;
        }
    }
    std::sort(
        exact.begin(), exact.end(), [](const DxccRow& a, const DxccRow& b) { return a.pattern < b.pattern; });
    std::stable_sort(prefixes.begin(), prefixes.end(), [](const DxccRow& a, const DxccRow& b) {
        return a.pattern.size() != b.pattern.size() ? a.pattern.size() > b.pattern.size()
                                                    : a.pattern < b.pattern;
    });
    return exact + prefixes;
}

QString CtyParser::entityFor(const QList<CtyEntity>& entities, const QString& callsign)
{
    return entitiesFor(entities, { callsign }).value(0);
}

QStringList CtyParser::entitiesFor(const QList<CtyEntity>& entities, const QStringList& callsigns)
{
    // The file's own rule, independent of the row order: exact call first, else longest prefix.
    QList<DxccRow> prefixRows;
    QList<DxccRow> exactRows;
    for (const CtyEntity& e : entities) {
        prefixRows << rowsOf(e, e.prefixes, false);
        exactRows << rowsOf(e, e.exactCalls, true);
    }
    PrefixIndex index(prefixRows);
    for (const DxccRow& r : exactRows) {
        if (!index.exact.contains(r.pattern))
            index.exact.insert(r.pattern, &r);
    }
    QStringList out;
    for (const QString& c : callsigns) {
        const DxccRow* r = index.lookup(c);
        out << (r ? r->country : QString());
    }
    return out;
}
