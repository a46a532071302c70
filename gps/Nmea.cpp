#include "gps/Nmea.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr QStringView kBlank = u" ";

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}
bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The steps every parser shares: trim and upper-case, type test, "*" test, then ",," -> ", ,"
// (an empty field holds one blank and keeps its place) and the split. The checksum is tested
// before the split, over the sentence as received, so a rejected sentence costs no splitting.
// `text` keeps the characters the fields point into.
bool prepare(const QString& sentence, QStringView type, QString& text, NmeaFields& fields)
{
    text = sentence.trimmed().toUpper();
    if (text.isEmpty() || text[0] != u'$' || QStringView(text).mid(3, 3) != type)
        return false;
    const qsizetype star = text.indexOf(u'*', 1);
    if (star < 0)
        return false;
    const QStringView all(text);
    if (NmeaChecksum(all.mid(1, star - 1)) != HexValue(all.mid(star + 1)))
        return false;
    // The checksum is not part of the last field; a number read there would stop at "*" anyway.
    fields = SplitFields(all.left(star), u',');
    for (int k = 1; k <= fields.count(); ++k) {
        if (fields[k].isEmpty())
            fields.set(k, kBlank);
    }
    return true;
}

QString textOf(QStringView field)
{
    // The one-letter fields (hemispheres, units) come as shared literals: no allocation.
    if (field.size() == 1) {
        switch (field[0].unicode()) {
        case u'N':
            return QStringLiteral("N");
        case u'S':
            return QStringLiteral("S");
        case u'E':
            return QStringLiteral("E");
        case u'W':
            return QStringLiteral("W");
        case u'M':
            return QStringLiteral("M");
        case u' ':
            return QStringLiteral(" ");
        }
    }
    return field.toString();
}

int integerOf(QStringView field)
{
    // A whole number as a 16-bit integer takes it: nearest, halves to even, within range.
    const double v = std::nearbyint(Nmea::number(field));
    return static_cast<int>(std::clamp(v, -32768.0, 32767.0));
}

QString sixDigits(QStringView f, QChar separator)
{
    QString s;
    s.reserve(8);
    s.append(f.mid(0, 2)).append(separator).append(f.mid(2, 2)).append(separator).append(f.mid(4, 2));
    return s;
}

} // namespace

qint32 NmeaChecksum(QStringView text)
{
    qint32 sum = 0;
    for (QChar c : text)
        sum ^= c.unicode();
    return sum;
}

qint32 HexValue(QStringView text)
{
    text = text.trimmed();
    if (text.isEmpty() || text.size() > 8)
        return -1;
    quint32 value = 0;
    for (QChar c : text) {
        const char16_t u = c.unicode();
        int d = -1;
        if (u >= u'0' && u <= u'9')
            d = u - u'0';
        else if (u >= u'A' && u <= u'F')
            d = u - u'A' + 10;
        else if (u >= u'a' && u <= u'f')
            d = u - u'a' + 10;
        if (d < 0)
            return -1;
        value = value << 4 | static_cast<quint32>(d);
    }
    return static_cast<qint32>(value);
}

NmeaFields SplitFields(QStringView text, QChar separator)
{
    NmeaFields fields;
    qsizetype from = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == separator) {
            fields.append(text.mid(from, i - from));
            from = i + 1;
        }
    }
    fields.append(text.mid(from));
    return fields;
}

bool ParseRMC(const QString& sentence, RmcData& out)
{
    QString text;
    NmeaFields f;
    // A sentence too short to hold the magnetic variation is rejected as a whole rather than
    // half written.
    if (!prepare(sentence, u"RMC", text, f) || f.count() < 11)
        return false;
    out.time = f[2] == kBlank ? QString() : Nmea::timeText(f[2]);
    out.valid = f[3] == u"A";
    out.latitude = Nmea::degrees(f[4]);
    out.latHemisphere = textOf(f[5]);
    out.longitude = Nmea::degrees(f[6]);
    out.lonHemisphere = textOf(f[7]);
    out.speed = Nmea::number(f[8]);
    out.course = Nmea::number(f[9]);
    if (f[10] != kBlank)
        out.date = Nmea::dateText(f[10]);
    out.magneticVariation = Nmea::number(f[11]);
    return true;
}

bool ParseGGA(const QString& sentence, GgaData& out)
{
    QString text;
    NmeaFields f;
    if (!prepare(sentence, u"GGA", text, f) || f.count() < 13)
        return false;
    out.time = f[2] == kBlank ? QString() : Nmea::timeText(f[2]);
    out.latitude = Nmea::degrees(f[3]);
    out.latHemisphere = textOf(f[4]);
    out.longitude = Nmea::degrees(f[5]);
    out.lonHemisphere = textOf(f[6]);
    out.quality = QStringLiteral("unknown");
    const double quality = Nmea::number(f[7]);
    if (quality == 0)
        out.quality = QStringLiteral("no fix");
    else if (quality == 1)
        out.quality = QStringLiteral("GPS fix");
    else if (quality == 2)
        out.quality = QStringLiteral("DGPS fix");
    else if (quality == 6)
        out.quality = QStringLiteral("guessed");
    out.satellites = integerOf(f[8]);
    out.hdop = Nmea::number(f[9]);
    out.altitude = Nmea::number(f[10]);
    out.altitudeUnit = textOf(f[11]);
    out.separation = Nmea::number(f[12]);
    out.separationUnit = textOf(f[13]);
    return true;
}

bool ParseGSA(const QString& sentence, GsaData& out)
{
    QString text;
    NmeaFields f;
    if (!prepare(sentence, u"GSA", text, f))
        return false;
    // Each output is read on its own: a field the sentence does not hold leaves its output as
    // it was, so a short sentence yields what it has.
    if (f.has(2))
        out.automatic = f[2] == u"A";
    out.fix = QStringLiteral("unknown");
    if (f[3] == u"3")
        out.fix = QStringLiteral("3D-Fix");
    else if (f[3] == u"2")
        out.fix = QStringLiteral("2D-Fix");
    else if (f[3] == u"1")
        out.fix = QStringLiteral("No-Fix");
    for (int i = 1; i <= 12; ++i) {
        const QStringView v = f[3 + i];
        out.satellites[i] = Nmea::isNumeric(v) ? std::optional<int>(integerOf(v)) : std::nullopt;
    }
    if (f.has(16))
        out.pdop = Nmea::number(f[16]);
    if (f.has(17))
        out.hdop = Nmea::number(f[17]);
    if (f.has(18))
        out.vdop = Nmea::number(f[18]);
    out.systemId = f.has(19) && Nmea::isNumeric(f[19]) ? integerOf(f[19]) : 0;
    return true;
}

bool ParseGSV(const QString& sentence, GsvData& out)
{
    QString text;
    NmeaFields f;
    if (!prepare(sentence, u"GSV", text, f))
        return false;
    auto read = [&](int k, auto& target) {
        if (Nmea::isNumeric(f[k]))
            target = integerOf(f[k]);
    };
    read(2, out.messageCount);
    read(3, out.messageNumber);
    read(4, out.satellitesInView);
    if (!Nmea::isNumeric(f[3]))
        return true;
    const int message = integerOf(f[3]);
    if (message == 1) {
        for (GsvTable* t : { &out.prn, &out.elevation, &out.azimuth, &out.snr })
            t->fill(std::nullopt);
    }
    // Four fields per satellite; a trailing field that makes no whole group (the signal
    // number of newer receivers) is not a satellite.
    for (int g = 0; g < 4 && f.has(8 + 4 * g); ++g) {
        const int slot = (message - 1) * 4 + g + 1;
        if (slot < 1 || slot >= int(out.prn.size()))
            continue;
        int k = 5 + 4 * g;
        for (GsvTable* t : { &out.prn, &out.elevation, &out.azimuth, &out.snr }) {
            (*t)[slot] = Nmea::isNumeric(f[k]) ? std::optional<int>(integerOf(f[k])) : std::nullopt;
            ++k;
        }
    }
    return true;
}

namespace Nmea {

double number(QStringView field)
{
    QVarLengthArray<char, 64> buf;
    enum { Start, Whole, Fraction, ExponentStart, Exponent } phase = Start;
    qsizetype exponentAt = -1;
    for (QChar c : field) {
        if (isBlank(c))
            continue;
        if ((c == u'-' || c == u'+') && (phase == Start || phase == ExponentStart)) {
            if (c == u'-')
                buf.append('-');
            phase = phase == Start ? Whole : Exponent;
        } else if (isDigit(c) && phase != ExponentStart) {
            buf.append(static_cast<char>(c.unicode()));
            if (phase == Start)
                phase = Whole;
        } else if (isDigit(c)) {
            buf.append(static_cast<char>(c.unicode()));
            phase = Exponent;
        } else if ((c == u'.' || c == u',') && (phase == Start || phase == Whole)) {
            buf.append('.');
            phase = Fraction;
        } else if ((c == u'E' || c == u'e' || c == u'D' || c == u'd')
            && (phase == Whole || phase == Fraction)) {
            exponentAt = buf.size();
            buf.append('e');
            phase = ExponentStart;
        } else {
            break;
        }
    }
    // An exponent letter without digits after it is not part of the number.
    if (exponentAt >= 0 && (buf.size() == exponentAt + 1 || buf.back() == '-'))
        buf.resize(exponentAt);
    double value = 0.0;
    const auto [ptr, ec] = std::from_chars(buf.data(), buf.data() + buf.size(), value);
    if (ec != std::errc() || ptr == buf.data())
        return 0.0;
    return value;
}

bool isNumeric(QStringView field)
{
    field = field.trimmed();
    qsizetype i = 0;
    const qsizetype n = field.size();
    if (i < n && (field[i] == u'+' || field[i] == u'-'))
        ++i;
    int digits = 0;
    while (i < n && isDigit(field[i]))
        ++i, ++digits;
    if (i < n && field[i] == u'.') {
        ++i;
        while (i < n && isDigit(field[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return false;
    if (i < n && (field[i] == u'E' || field[i] == u'e')) {
        ++i;
        if (i < n && (field[i] == u'+' || field[i] == u'-'))
            ++i;
        int exponentDigits = 0;
        while (i < n && isDigit(field[i]))
            ++i, ++exponentDigits;
        if (exponentDigits == 0)
            return false;
    }
    return i == n;
}

double round8(double value)
{
    if (value < 0)
        return -round8(-value);
    return std::floor(value * 1e8 + 0.5) / 1e8;
}

double degrees(QStringView field)
{
    // The degrees are what stands before the last two digits in front of the point; a field
    // without a point is read as if the point stood at its end.
    qsizetype point = field.indexOf(u'.');
    if (point < 0)
        point = field.size();
    const qsizetype cut = std::max<qsizetype>(0, point - 2);
    return round8(number(field.left(cut)) + number(field.mid(cut)) / 60.0);
}

QString timeText(QStringView field)
{
    return sixDigits(field, u':');
}
QString dateText(QStringView field)
{
    return sixDigits(field, u'.');
}

} // namespace Nmea
