#include "logbook/browse/DxccCall.h"

#include <QStringList>

namespace {

// Suffixes that say how or where-ever the station works, not in which entity.
const QStringList PlaceLess = { "P", "M", "A", "B", "QRP", "QRPP", "LH", "LGT", "J", "R", "AE", "AG", "KT" };

bool isDigit(const QString& part)
{
    return part.size() == 1 && part[0].isDigit();
}

// W1ABC with 4 -> W4ABC: the last digit of the call is its call area.
QString withArea(QString call, QChar digit)
{
    for (qsizetype i = call.size() - 1; i >= 0; --i) {
        if (call[i].isDigit()) {
            call[i] = digit;
            break;
        }
    }
    return call;
}

} // namespace

namespace DxccCall {

QString normalised(const QString& callsign, const std::function<bool(const QString&)>& isExactCall)
{
    const QString call = callsign.trimmed().toUpper();
    auto listed = [&](const QString& text) { return isExactCall && isExactCall(text); };
    if (call.isEmpty() || listed(call))
        return call;
    // Most calls have no parts: read as they are, without splitting (bulk lookups).
    if (!call.contains(QLatin1Char('/')) && call != QLatin1String("MM") && call != QLatin1String("AM"))
        return call;
    QStringList parts = call.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& p : std::as_const(parts)) {
        if (p == QLatin1String("MM") || p == QLatin1String("AM"))
            return QString();
    }
    for (qsizetype i = parts.size() - 1; i > 0; --i) {
        if (PlaceLess.contains(parts[i]))
            parts.removeAt(i);
    }
    const QString kept = parts.join(QLatin1Char('/'));
    if (parts.size() < 2 || listed(kept))
        return kept;
    const QString& a = parts[0];
    const QString& b = parts[1];
    if (isDigit(b))
        return withArea(a, b[0]);
    if (isDigit(a))
        return withArea(b, a[0]);
    // The shorter part is the designator (the first of two equally long ones).
    return b.size() < a.size() ? b : a;
}

} // namespace DxccCall
