#include "logbook/db/SqlSource.h"

#include <QRegularExpression>

namespace {

// SELECT <list> FROM <table>[ where|order|limit ...]: one table, a star or plain column names.
const QRegularExpression& singleTableSelect()
{
    static const QRegularExpression re(
        QStringLiteral(
            R"(^\s*select\s+(\*|\w+(?:\s*,\s*\w+)*)\s+from\s+(\w+)(\s*|\s+(?:where|order|limit)\b.*)$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return re;
}

bool lastKeyDescending(const QString& sort)
{
    static const QRegularExpression desc(
        QStringLiteral(R"(\bdesc\s*$)"), QRegularExpression::CaseInsensitiveOption);
    return desc.match(sort).hasMatch();
}

QString wrap(const QString& inner, const QString& filter, const QString& sort, const QString& tieBreak)
{
    const bool hasFilter = !filter.trimmed().isEmpty();
    const bool hasSort = !sort.trimmed().isEmpty();
    if (!hasFilter && !hasSort)
        return inner;
    QString out = QStringLiteral("SELECT * FROM (") + inner + QLatin1Char(')');
    if (hasFilter)
        out += QStringLiteral(" WHERE ") + filter;
    if (hasSort) {
        out += QStringLiteral(" ORDER BY ") + sort;
        if (!tieBreak.isEmpty())
            out += QStringLiteral(", ") + tieBreak;
    }
    return out;
}

} // namespace

SqlSource::SqlSource(const QString& sql)
    : sql_(sql)
{
    const QRegularExpressionMatch m = singleTableSelect().match(sql);
    if (!m.hasMatch())
        return;
    table_ = m.captured(2);
    insertAt_ = m.capturedStart(1);
}

QString SqlSource::statement(const QString& filter, const QString& sort) const
{
    if (!updatable())
        return wrap(sql_, filter, sort, QString());
    QString inner = sql_;
    inner.insert(insertAt_, table_ + QStringLiteral(".rowid AS ") + RowIdColumn + QStringLiteral(", "));
    const QString tieBreak = RowIdColumn + (lastKeyDescending(sort) ? QStringLiteral(" DESC") : QString());
    return wrap(inner, filter, sort, tieBreak);
}

QString SqlSource::plainStatement(const QString& filter, const QString& sort) const
{
    return wrap(sql_, filter, sort, QString());
}
