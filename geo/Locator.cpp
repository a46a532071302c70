#include "geo/Locator.h"

#include "core/Station.h"

#include <cmath>

namespace {

bool inRange(QChar c, char16_t lo, char16_t hi) { return c.unicode() >= lo && c.unicode() <= hi; }
bool isDigit(QChar c) { return inRange(c, u'0', u'9'); }
bool isField(QChar c) { return inRange(c, u'A', u'R'); }
bool isSub(QChar c) { return inRange(c, u'A', u'x'); }

QString number15(double v)
{
    // 15 significant digits in fixed notation, trailing zeros removed.
    if (v == 0.0 || !std::isfinite(v))
        return QStringLiteral("0");
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(v))));
    const int decimals = std::max(0, 14 - magnitude);
    QString s = QString::number(v, 'f', decimals);
    if (s.contains(u'.')) {
        while (s.endsWith(u'0'))
            s.chop(1);
        if (s.endsWith(u'.'))
            s.chop(1);
    }
    if (s == QLatin1String("-0"))
        s = QStringLiteral("0");
    return s;
}

} // namespace

namespace Locator {

bool isValid(const QString& l)
{
    const qsizetype n = l.size();
    if (n != 4 && n != 6 && n != 8 && n != 10)
        return false;
    if (!isField(l[0]) || !isField(l[1]) || !isDigit(l[2]) || !isDigit(l[3]))
        return false;
    if (n >= 6 && (!isSub(l[4]) || !isSub(l[5])))
        return false;
    if (n >= 8 && (!isDigit(l[6]) || !isDigit(l[7])))
        return false;
    if (n == 10 && (!isSub(l[8]) || !isSub(l[9])))
        return false;
    return true;
}

QString completed(const QString& locator)
{
    return locator.size() == 4 ? locator + QStringLiteral("HH") : locator;
}

std::optional<QString> own(const QString& setting)
{
    const QString l = completed(setting.toUpper());
    return isValid(l) ? std::optional<QString>(l) : std::nullopt;
}

QString ownProblem(const QString& setting)
{
    const QString where = QStringLiteral(
        "Set it in Initial (menu), box MyGrid: 4, 6, 8 or 10 characters such as JO31 or JO31MM; "
        "4 characters stand for the HH subsquare.");
    if (setting.isEmpty())
        return QStringLiteral("Your own locator is not set, so no heading or distance can be worked out. ")
            + where;
    return QStringLiteral(
               "Your own locator \"%1\" is not valid, so no heading or distance can be worked out. ")
               .arg(setting)
        + where;
}

} // namespace Locator

void CheckLocator(Station& station, const QString& locator)
{
    station.locatorInvalid = !Locator::isValid(locator);
    if (station.locatorInvalid)
        station.prompts.information(QStringLiteral("Invalid Gridlocator:"));
}

GeoPoint LocatorToDegrees(const QString& locator)
{
    QString l = locator.toUpper();
    if (l.size() < 6)
        l = l.leftJustified(4, u'0') + QStringLiteral("AA"); // a bare square: its corner
    auto c = [&](int i) -> int { return i <= l.size() ? l[i - 1].unicode() : 0; };
    GeoPoint p;
    const qint16 lonInt = static_cast<qint16>((c(1) - 74) * 20 + (c(3) - 48) * 2);
    const qint16 latInt = static_cast<qint16>((c(2) - 74) * 10 + (c(4) - 48));
    p.lon = lonInt + (c(5) - 65) / 12.0;
    p.lat = latInt + (c(6) - 65) / 24.0;
    if (l.size() <= 6)
        return p;
    p.lon += (c(7) - 48) / 120.0;
    p.lat += (c(8) - 48) / 240.0;
    if (l.size() <= 8)
        return p;
    p.lon += (c(9) - 65) / 2880.0;
    p.lat += (c(10) - 65) / 5760.0;
    return p;
}

QString CoordText(const GeoPoint& p)
{
    return number15(p.lon) + u',' + number15(p.lat);
}
