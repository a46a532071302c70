#include "logbook/db/CtyParser.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {
QString stripOverrides(const QString& item)
{
    static const QRegularExpression overrides(
        QStringLiteral(R"(\([^)]*\)|\[[^\]]*\]|<[^>]*>|\{[^}]*\}|~[^~]*~)"));
    QString s = item;
    s.remove(overrides);
    return s.trimmed().toUpper();
}

struct PrefixIndex {
    QHash<QString, QString> exact;
    QHash<QString, QString> prefix;
    int longest = 0;

    explicit PrefixIndex(const QList<CtyEntity>& entities, bool withExact)
    {
        for (const CtyEntity& e : entities) {
            for (const QString& p : e.prefixes) {
                if (!prefix.contains(p))
                    prefix.insert(p, e.name);
                longest = std::max(longest, int(p.size()));
            }
            if (withExact) {
                for (const QString& c : e.exactCalls) {
                    if (!exact.contains(c))
                        exact.insert(c, e.name);
                }
            }
        }
    }

    QString lookup(const QString& call) const
    {
        const QString c = call.toUpper();
        if (const auto it = exact.constFind(c); it != exact.cend())
            return *it;
        for (int n = std::min(longest, int(c.size())); n > 0; --n) {
            if (const auto it = prefix.constFind(c.left(n)); it != prefix.cend())
                return *it;
        }
        return QString();
    }
};
} // namespace

QList<CtyEntity> CtyParser::parse(const QString& text, QString* error)
{
    QList<CtyEntity> entities;
    QStringList bad;
    const QStringList records = text.split(QLatin1Char(';'));
    for (const QString& raw : records) {
        const QString record = raw.trimmed();
        if (record.isEmpty())
            continue;
        const QStringList fields = record.split(QLatin1Char(':'));
        if (fields.size() != 9) {
            bad << record.left(40);
            continue;
        }
        CtyEntity e;
        e.name = fields[0].trimmed();
        e.continent = fields[3].trimmed();
        QString primary = fields[7].trimmed();
        if (primary.startsWith(QLatin1Char('*'))) {
            e.waeOnly = true;
            primary.remove(0, 1);
        }
        e.primaryPrefix = primary;
        const QStringList items = fields[8].split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString& item : items) {
            QString s = stripOverrides(item);
            if (s.isEmpty())
                continue;
            if (s.startsWith(QLatin1Char('='))) {
                s.remove(0, 1);
                if (!s.isEmpty())
                    e.exactCalls << s;
            } else {
                e.prefixes << s;
            }
        }
        if (e.name.isEmpty() || (e.prefixes.isEmpty() && e.exactCalls.isEmpty())) {
            bad << record.left(40);
            continue;
        }
        entities << e;
    }
    if (error)
        *error = bad.isEmpty()
            ? QString()
            : QStringLiteral("Skipped malformed records: ") + bad.join(QStringLiteral(" | "));
    return entities;
}

QList<DxccRow> CtyParser::toRows(const QList<CtyEntity>& entities)
{
    const PrefixIndex byPrefix(entities, false);
    QList<DxccRow> exact;
    QList<DxccRow> prefixes;
    QSet<QString> seen;
    for (const CtyEntity& e : entities) {
        for (const QString& c : e.exactCalls) {
            if (seen.contains(c) || byPrefix.lookup(c) == e.name)
                continue;
            seen.insert(c);
            exact.append({ c, e.name, e.primaryPrefix });
        }
        for (const QString& p : e.prefixes) {
            const QString pattern = p + QLatin1Char('%');
            if (seen.contains(pattern))
                continue;
            seen.insert(pattern);
            prefixes.append({ pattern, e.name, e.primaryPrefix });
        }
    }
    std::sort(
        exact.begin(), exact.end(), [](const DxccRow& a, const DxccRow& b) { return a.pattern < b.pattern; });
    std::sort(prefixes.begin(), prefixes.end(), [](const DxccRow& a, const DxccRow& b) {
        return a.pattern.size() != b.pattern.size() ? a.pattern.size() > b.pattern.size()
                                                    : a.pattern < b.pattern;
    });
    return exact + prefixes;
}

QString CtyParser::entityFor(const QList<CtyEntity>& entities, const QString& callsign)
{
    return PrefixIndex(entities, true).lookup(callsign);
}

QStringList CtyParser::entitiesFor(const QList<CtyEntity>& entities, const QStringList& callsigns)
{
    const PrefixIndex index(entities, true);
    QStringList out;
    for (const QString& c : callsigns)
        out << index.lookup(c);
    return out;
}
