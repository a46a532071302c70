#include "geo/Locator.h"

#include "core/Station.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

bool inRange(QChar c, char16_t lo, char16_t hi) { return c.unicode() >= lo && c.unicode() <= hi; }
bool isDigit(QChar c) { return inRange(c, u'0', u'9'); }
bool isField(QChar c) { return inRange(c, u'A', u'R'); }
bool isSub(QChar c) { return inRange(c, u'A', u'x'); }

// QString::number(v, 'f', decimals) into `out` without the locale machinery (the bulk import
// writes two a contact); its end. to_chars gives the exact digits but rounds an exact half to
// even, Qt away from zero: such a value (its last binary digit stands at 10^-(decimals+1)) is
// written one digit longer, exactly, and rounded here.
char* fixedText(double v, int decimals, char* out, char* outEnd)
{
    int exponent = 0;
    std::uint64_t mantissa = std::uint64_t(std::ldexp(std::fabs(std::frexp(v, &exponent)), 53));
    exponent -= 53;
    for (; mantissa != 0 && mantissa % 2 == 0; mantissa /= 2)
        ++exponent;
    const bool half = exponent == -(decimals + 1);
    char* end = std::to_chars(out, outEnd, v, std::chars_format::fixed, decimals + (half ? 1 : 0)).ptr;
    if (!half)
        return end;
    --end; // the final 5
    if (decimals == 0)
        --end; // and the point before it
    char* at = end;
    while (at > out && (at[-1] == '9' || at[-1] == '.')) {
        --at;
        if (*at == '9')
            *at = '0';
    }
    if (at > out && at[-1] >= '0' && at[-1] <= '8') {
        ++at[-1];
        return end;
    }
    // 9.5 -> 10: a new first digit after the sign.
    std::memmove(at + 1, at, std::size_t(end - at));
    *at = '1';
    return end + 1;
}

// The longest text number15 writes: 309 digits of the largest double and its sign.
constexpr int kMaxNumber15 = 320;

// 15 significant digits in fixed notation, trailing zeros removed, written at `out`; its end.
char* number15(double v, char* out)
{
    if (v == 0.0 || !std::isfinite(v)) {
        *out = '0';
        return out + 1;
    }
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(v))));
    const int decimals = std::max(0, 14 - magnitude);
    char* end = out;
    if (magnitude <= 15 && decimals <= 40) {
        end = fixedText(v, decimals, out, out + 64);
    } else {
        const QByteArray text = QString::number(v, 'f', decimals).toLatin1().left(kMaxNumber15);
        end = std::copy(text.cbegin(), text.cend(), out);
    }
    if (std::find(out, end, '.') != end) {
        while (end[-1] == '0')
            --end;
        if (end[-1] == '.')
            --end;
    }
    if (end - out == 2 && out[0] == '-' && out[1] == '0') {
        *out = '0';
        end = out + 1;
    }
    return end;
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
    // Written into one buffer and made a QString once: the import writes one a contact.
    char text[2 * kMaxNumber15 + 1];
    char* end = number15(p.lon, text);
    *end++ = ',';
    end = number15(p.lat, end);
    return QString::fromLatin1(text, end - text);
}
