#include "cluster/Spot.h"

#include "core/AdifBandPlan.h"

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

bool isCallChar(QChar c)
{
    return (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
        || (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
        || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('/');
}

bool isSpotterChar(QChar c)
{
    return isCallChar(c) || c == QLatin1Char('-') || c == QLatin1Char('#') || c == QLatin1Char('_');
}

// "HHMMZ" with a valid hour and minute.
bool isTime(QStringView t)
{
    if (t.size() != 5 || (t[4] != QLatin1Char('Z') && t[4] != QLatin1Char('z')))
        return false;
    for (int i = 0; i < 4; ++i) {
        if (!t[i].isDigit())
            return false;
    }
    const int hh = t.left(2).toInt();
    const int mm = t.mid(2, 2).toInt();
    return hh < 24 && mm < 60;
}

qsizetype skipBlanks(QStringView s, qsizetype i)
{
    while (i < s.size() && isBlank(s[i]))
        ++i;
    return i;
}

qsizetype tokenEnd(QStringView s, qsizetype i)
{
    while (i < s.size() && !isBlank(s[i]))
        ++i;
    return i;
}

QStringView trimmedBlanks(QStringView s)
{
    qsizetype b = 0;
    qsizetype e = s.size();
    while (b < e && isBlank(s[b]))
        ++b;
    while (e > b && isBlank(s[e - 1]))
        --e;
    return s.mid(b, e - b);
}

// Splits "comment  1234Z [locator]" into its parts; false without a time at the end.
bool splitTail(QStringView tail, QStringView& comment, QStringView& time, QStringView& locator)
{
    tail = trimmedBlanks(tail);
    qsizetype lastStart = tail.size();
    while (lastStart > 0 && !isBlank(tail[lastStart - 1]))
        --lastStart;
    QStringView last = tail.mid(lastStart);
    QStringView before = tail.left(lastStart);
    locator = {};
    if (!isTime(last.right(5)) && lastStart > 0 && last.size() <= 8) {
        // a locator or a similar short field after the time
        locator = last;
        before = trimmedBlanks(before);
        lastStart = before.size();
        while (lastStart > 0 && !isBlank(before[lastStart - 1]))
            --lastStart;
        last = before.mid(lastStart);
        before = before.left(lastStart);
    }
    if (!isTime(last.right(5)))
        return false;
    // a long comment may run straight into the time: "...all1234Z"
    if (last.size() > 5 && last[last.size() - 6].isDigit())
        return false;
    time = last.right(5);
    comment = trimmedBlanks(tail.left(before.size() + last.size() - 5));
    return true;
}

} // namespace

std::optional<Spot> parseSpotLine(QStringView line)
{
    qsizetype i = skipBlanks(line, 0);
    if (!line.mid(i, 5).startsWith(QLatin1String("DX de"), Qt::CaseInsensitive))
        return std::nullopt;
    i += 5;
    if (i >= line.size() || !isBlank(line[i]))
        return std::nullopt;
    i = skipBlanks(line, i);

    const qsizetype spotterStart = i;
    while (i < line.size() && isSpotterChar(line[i]))
        ++i;
    if (i == spotterStart || i >= line.size() || line[i] != QLatin1Char(':'))
        return std::nullopt;
    Spot spot;
    spot.spotter = line.mid(spotterStart, i - spotterStart).toString().toUpper();
    i = skipBlanks(line, i + 1);

    const qsizetype freqStart = i;
    while (i < line.size() && (line[i].isDigit() || line[i] == QLatin1Char('.')))
        ++i;
    if (i == freqStart || i >= line.size() || !isBlank(line[i]))
        return std::nullopt;
    bool ok = false;
    spot.frequency = line.mid(freqStart, i - freqStart).toString();
    spot.kHz = spot.frequency.toDouble(&ok);
    if (!ok || !(spot.kHz > 0) || spot.kHz > 1e9)
        return std::nullopt;

    i = skipBlanks(line, i);
    const qsizetype callEnd = tokenEnd(line, i);
    const QStringView call = line.mid(i, callEnd - i);
    if (call.size() < 2 || call.size() > 20)
        return std::nullopt;
    for (QChar c : call) {
        if (!isCallChar(c))
            return std::nullopt;
    }
    spot.call = call.toString().toUpper();

    QStringView comment, time, locator;
    if (!splitTail(line.mid(callEnd), comment, time, locator))
        return std::nullopt;
    spot.comment = comment.toString();
    spot.time = time.toString().toUpper();
    spot.locator = locator.toString();
    spot.band = AdifBandPlan::bandOfKHz(spot.kHz);
    return spot;
}
