#include "logbook/adif/AdifMapping.h"

#include "geo/Locator.h"
#include "logbook/adif/AdifBands.h"
#include "logbook/entry/LogClock.h"

#include <QSet>

#include <algorithm>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

const QString AppBand = QStringLiteral("APP_KESTREL_BAND");
const QString AppQsl = QStringLiteral("APP_KESTREL_QSL");
const QString AppProp = QStringLiteral("APP_KESTREL_PROP");
const QString AppFreq = QStringLiteral("APP_KESTREL_FREQ");
const QString AppPrefix = QStringLiteral("APP_KESTREL_");

// The fields the import puts into columns (or that decide one); every other is kept as text.
const QSet<QString> ConsumedFields = { "CALL", "QSO_DATE", "TIME_ON", "BAND", "FREQ", "GRIDSQUARE",
    "DISTANCE", "SUBMODE", "RST_SENT", "RST_RCVD", "NAME", "COMMENT", "QSL_SENT", "QSL_RCVD", "PROP_MODE",
    "COUNTRY", "DXCC", "QSL_VIA", "TX_PWR", "MY_ANTENNA", "STATION_CALLSIGN", "MY_GRIDSQUARE", "CONTEST_ID",
    "STX", "STX_STRING", "SRX", "SRX_STRING", "QSLSDATE", "QSLRDATE", "CONT", "CQZ", "ITUZ", "NOTES", AppBand,
    AppQsl, AppProp, AppFreq };

// ADIF's PROP_MODE values.
const QStringList PropModes = { "AS", "AUE", "AUR", "BS", "ECH", "EME", "ES", "F2", "FAI", "GWAVE",
    "INTERNET", "ION", "IRL", "LOS", "MS", "RPT", "RS", "SAT", "TEP", "TR" };

struct Submode {
    const char* submode;
    const char* mode;
};
constexpr Submode Submodes[] = { { "USB", "SSB" }, { "LSB", "SSB" }, { "FT4", "MFSK" }, { "JS8", "MFSK" },
    { "FST4", "MFSK" }, { "Q65", "MFSK" }, { "PSK31", "PSK" }, { "PSK63", "PSK" }, { "PSK125", "PSK" } };

bool isDigits(const QString& s)
{
    if (s.isEmpty())
        return false;
    for (const QChar c : s) {
        if (!c.isDigit())
            return false;
    }
    return true;
}

QString numberText(const QVariant& v)
{
    return v.isValid() ? QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest) : QString();
}

bool sameNumber(const QString& a, const QString& b)
{
    bool okA = false;
    bool okB = false;
    const double x = a.toDouble(&okA);
    const double y = b.toDouble(&okB);
    return okA && okB && qFuzzyCompare(x, y);
}

// "<NAME:length>value " appended in place (the export writes 30 of them per record).
void appendField(QByteArray& out, const char* name, const QString& value)
{
    if (value.isEmpty())
        return;
    const QByteArray bytes = value.toUtf8();
    out += '<';
    out += name;
    out += ':';
    out += QByteArray::number(bytes.size());
    out += '>';
    out += bytes;
    out += ' ';
}

// The Freq column keeps a frequency the band text does not already say.
QString freqColumn(const QString& freq, const QString& band)
{
    return freq.isEmpty() || sameNumber(freq, AdifBands::fromBandText(band).freq) ? QString() : freq;
}

} // namespace

namespace AdifMapping {

QString dateToAdif(const QString& stored)
{
    const QDate d = LogClock::date(stored);
    return d.isValid() ? LogClock::compactDateText(d) : QString();
}

QString timeFromAdif(const QString& adif)
{
    if (adif.contains(QLatin1Char(':')))
        return QString();
    bool seconds = false;
    const QTime t = LogClock::time(adif, &seconds);
    if (!t.isValid())
        return QString();
    return seconds ? LogClock::hoursMinutesSeconds(t) : LogClock::hoursMinutes(t);
}

QString timeToAdif(const QString& text)
{
    bool seconds = false;
    const QTime t = LogClock::time(text, &seconds);
    return t.isValid() ? LogClock::compactTime(t, seconds) : QString();
}

QslStatus qslStatus(const QString& letter)
{
    if (letter == QLatin1String("Q") || letter == QLatin1String("q"))
        return { QStringLiteral("Y"), QStringLiteral("Y") };
    if (letter == QLatin1String("T"))
        return { QStringLiteral("Q"), QStringLiteral("Y") };
    if (letter == QLatin1String("Y"))
        return { QStringLiteral("Q"), QStringLiteral("N") };
    if (letter == QLatin1String("S"))
        return { QStringLiteral("R"), QStringLiteral("N") };
    if (letter == QLatin1String("N") || letter == QLatin1String("D"))
        return { QStringLiteral("Y"), QStringLiteral("N") };
    return {};
}

QString qslLetter(const QString& sent, const QString& rcvd, const QString& lotwRcvd, const QString& eqslRcvd)
{
    auto yes = [](const QString& v) {
        const QString t = v.trimmed().toUpper();
        return t == QLatin1String("Y") || t == QLatin1String("V");
    };
    const QString s = sent.trimmed().toUpper();
    if (yes(rcvd))
        return s == QLatin1String("Y") ? QStringLiteral("Q") : QStringLiteral("T");
    if (yes(lotwRcvd) || yes(eqslRcvd))
        return QStringLiteral("Q");
    if (s == QLatin1String("Y"))
        return QStringLiteral("N");
    if (s == QLatin1String("R"))
        return QStringLiteral("S");
    if (s == QLatin1String("Q"))
        return QStringLiteral("Y");
    return QString();
}

QString propMode(const QString& code)
{
    const QString c = code.trimmed().toUpper();
    if (c == QLatin1String("AU"))
        return QStringLiteral("AUR");
    return PropModes.contains(c) ? c : QString();
}

QString propCode(const QString& mode)
{
    const QString m = mode.trimmed().toUpper();
    if (m == QLatin1String("TR"))
        return QStringLiteral("Tr");
    if (m == QLatin1String("RS"))
        return QStringLiteral("Rs");
    if (m == QLatin1String("ES"))
        return QStringLiteral("Es");
    if (m == QLatin1String("AUR") || m == QLatin1String("AUE"))
        return QStringLiteral("Au");
    if (m == QLatin1String("MS"))
        return QStringLiteral("Ms");
    return m;
}

QPair<QString, QString> modeFields(const QString& mode)
{
    for (const Submode& s : Submodes) {
        if (mode.compare(QLatin1String(s.submode), Qt::CaseInsensitive) == 0)
            return { QString::fromLatin1(s.mode), mode };
    }
    return { mode, QString() };
}

QByteArray field(const char* name, const QString& value)
{
    QByteArray out;
    appendField(out, name, value);
    return out;
}

QByteArray header(const QDateTime& createdUtc)
{
    return QByteArray("Kestrel logbook export\n") + field("ADIF_VER", QStringLiteral("3.1.4")) + '\n'
        + field("PROGRAMID", QStringLiteral("Kestrel")) + '\n'
        + field("CREATED_TIMESTAMP", createdUtc.toString(QStringLiteral("yyyyMMdd HHmmss"))) + '\n'
        + QByteArray("<EOH>\n");
}

QList<QPair<QString, QString>> extraFields(const QString& adifExtra)
{
    QList<QPair<QString, QString>> out;
    if (adifExtra.isEmpty())
        return out;
    AdifReader reader(adifExtra.toUtf8() + "<EOR>");
    AdifRecord r;
    while (reader.next(r)) {
        for (const AdifFields::Field& f : r.fields)
            out.append({ f.name, f.value });
    }
    std::sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return out;
}

QString extraText(QList<QPair<QString, QString>> fields)
{
    std::stable_sort(
        fields.begin(), fields.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    // ASCII names and values, nearly every record's, written straight into the text: the import
    // makes one a record, and the bytes and their text are the same. (A name is written as a C
    // string below: one with a NUL goes that way.)
    auto ascii = [](const QString& t, char16_t from) {
        return std::all_of(t.cbegin(), t.cend(), [from](QChar c) { return c >= from && c.unicode() < 0x80; });
    };
    if (std::all_of(fields.cbegin(), fields.cend(),
            [&](const auto& f) { return ascii(f.first, 1) && ascii(f.second, 0); })) {
        QString text;
        for (const auto& [name, value] : std::as_const(fields)) {
            if (value.isEmpty())
                continue;
            char length[24];
            const char* end = std::to_chars(length, length + sizeof length, value.size()).ptr;
            text += QLatin1Char('<');
            text += name;
            text += QLatin1Char(':');
            text += QLatin1StringView(length, end - length);
            text += QLatin1Char('>');
            text += value;
            text += QLatin1Char(' ');
        }
        text.chop(1); // the blank after the last value
        return text;
    }
    QByteArray out;
    for (const auto& [name, value] : fields)
        appendField(out, name.toLatin1().constData(), value);
    out.chop(1); // the blank after the last value, never a blank of the value
    return QString::fromUtf8(out);
}

QByteArray recordText(const AdifContact& c, LogClock::Base clock)
{
    const AdifBand band = AdifBands::fromBandText(c.band);
    const QString freq = c.freq.isEmpty() ? band.freq : c.freq;
    QString bandName = band.band;
    if (bandName.isEmpty() && !freq.isEmpty())
        bandName = AdifBands::bandOfFrequency(freq.toDouble());
    const QString prop = propMode(c.prop);
    QString date = dateToAdif(c.date);
    QString time = timeToAdif(c.gmt);
    if (!date.isEmpty() && !time.isEmpty()) {
        const QDateTime utc = LogClock::toUtc(LogClock::date(c.date), LogClock::time(c.gmt), clock);
        date = LogClock::compactDateText(utc.date());
        time = LogClock::compactTime(utc.time(), time.size() == 6);
    }

    QList<QPair<QString, QString>> extra = extraFields(c.adifExtra);
    auto extraValue = [&extra](const char* name) {
        for (const auto& [n, v] : extra) {
            if (n == QLatin1String(name))
                return v;
        }
        return QString();
    };
    // A submode of no known mode goes back with the MODE it came with.
    auto [mode, submode] = modeFields(c.mode);
    const QString ownMode = extraValue("MODE");
    if (submode.isEmpty() && !ownMode.isEmpty()) {
        submode = mode;
        mode = ownMode;
        extra.removeIf([](const auto& f) { return f.first == QLatin1String("MODE"); });
    }
    // The record's own QSL_SENT and QSL_RCVD go back as they came while they still give the letter.
    const QString lotw = extraValue("LOTW_QSL_RCVD");
    const QString eqsl = extraValue("EQSL_QSL_RCVD");
    QslStatus qsl = qslStatus(c.qsl);
    const QslStatus ownQsl { extraValue("QSL_SENT"), extraValue("QSL_RCVD") };
    if ((!ownQsl.sent.isEmpty() || !ownQsl.rcvd.isEmpty())
        && qslLetter(ownQsl.sent, ownQsl.rcvd, lotw, eqsl) == c.qsl) {
        qsl = ownQsl;
        extra.removeIf([](const auto& f) {
            return f.first == QLatin1String("QSL_SENT") || f.first == QLatin1String("QSL_RCVD");
        });
    }

    QByteArray out;
    out.reserve(400);
    QSet<QString> written;
    auto put = [&out, &written](const char* name, const QString& value) {
        if (value.isEmpty())
            return;
        written.insert(QLatin1String(name));
        appendField(out, name, value);
    };
    put("CALL", c.callsign);
    put("QSO_DATE", date);
    put("TIME_ON", time);
    put("BAND", bandName);
    put("FREQ", freq);
    put("MODE", mode);
    put("SUBMODE", submode);
    put("RST_SENT", c.rsts);
    put("RST_RCVD", c.rstr);
    put("GRIDSQUARE", c.grid.left(8));
    put("GRIDSQUARE_EXT", c.grid.mid(8));
    put("NAME", c.nam);
    put("COMMENT", c.comment);
    put("QSL_SENT", qsl.sent);
    put("QSL_RCVD", qsl.rcvd);
    put("PROP_MODE", prop);
    put("COUNTRY", c.dxcc);
    put("DXCC", c.dxccNr);
    if (!c.grid.isEmpty())
        put("DISTANCE", numberText(c.qrb));
    put("QSL_VIA", c.qslman);
    put("TX_PWR", c.txPwr);
    put("MY_ANTENNA", c.antenna);
    put("STATION_CALLSIGN", c.myCall);
    put("MY_GRIDSQUARE", c.myGrid);
    put("CONTEST_ID", c.contest);
    put(isDigits(c.nrSent) ? "STX" : "STX_STRING", c.nrSent);
    put(isDigits(c.nrRcvd) ? "SRX" : "SRX_STRING", c.nrRcvd);
    put("QSLSDATE", c.qslSent);
    put("QSLRDATE", c.qslRcvd);
    put("CONT", c.cont);
    put("CQZ", c.cqZone);
    put("ITUZ", c.ituZone);
    put("NOTES", c.remarks);
    for (const auto& [name, value] : extra) {
        const QString key = written.contains(name) ? AppPrefix + name : name;
        appendField(out, key.toLatin1().constData(), value);
    }
    // What the standard fields would not give back exactly.
    if (AdifBands::bandTextFor(bandName, freq) != c.band)
        appendField(out, "APP_KESTREL_BAND", c.band);
    if (qslLetter(qsl.sent, qsl.rcvd, lotw, eqsl) != c.qsl)
        appendField(out, "APP_KESTREL_QSL", c.qsl);
    if (propCode(prop) != c.prop)
        appendField(out, "APP_KESTREL_PROP", c.prop);
    if (freqColumn(freq, c.band) != c.freq)
        appendField(out, "APP_KESTREL_FREQ", c.freq);
    out += "<EOR>\n";
    return out;
}

bool toContact(const AdifRecord& r, AdifContact& c, QString* reason, QStringList* notes, LogClock::Base clock)
{
    c = AdifContact();
    if (!r.error.isEmpty()) {
        if (reason)
            *reason = r.error;
        return false;
    }
    // A field of ConsumedFields: it has a column and is not kept as extra text. Names are
    // literals (u"CALL"_s), so looking a field up allocates nothing.
    auto take = [&r](const QString& name) { return r.value(name); };
    bool extJoined = false;
    QList<QPair<QString, QString>> extra;
    // A field kept as text where its column cannot take it.
    auto keep = [&](const char* name, const QString& why) {
        extra.append({ QLatin1String(name), r.value(QLatin1String(name)) });
        if (notes)
            *notes << QStringLiteral("%1 \"%2\" %3, kept as text")
                          .arg(QLatin1String(name), r.value(QLatin1String(name)), why);
    };

    c.callsign = take(u"CALL"_s).trimmed().toUpper();
    if (c.callsign.isEmpty()) {
        if (reason)
            *reason = QStringLiteral("no CALL");
        return false;
    }
    const QString date = take(u"QSO_DATE"_s);
    const QDate day = LogClock::compactDate(date.trimmed());
    if (!day.isValid()) {
        if (reason)
            *reason = date.isEmpty() ? QStringLiteral("no QSO_DATE")
                                     : QStringLiteral("QSO_DATE \"%1\" is not a date (YYYYMMDD)").arg(date);
        return false;
    }
    c.date = LogClock::storedDate(day);
    const QString time = take(u"TIME_ON"_s);
    c.gmt = timeFromAdif(time);
    if (!c.gmt.isEmpty()) {
        const QDateTime onClock = LogClock::fromUtc(day, LogClock::time(c.gmt), clock);
        c.date = LogClock::storedDate(onClock.date());
        c.gmt = c.gmt.size() > 5 ? LogClock::hoursMinutesSeconds(onClock.time())
                                 : LogClock::hoursMinutes(onClock.time());
    } else if (!time.isEmpty()) {
        keep("TIME_ON", QStringLiteral("is not a time (HHMM or HHMMSS)"));
    }
    const QString bandName = take(u"BAND"_s);
    const QString freq = take(u"FREQ"_s).trimmed();
    c.band = r.has(AppBand) ? r.value(AppBand) : AdifBands::bandTextFor(bandName, freq);
    if (c.band.isEmpty() && !bandName.isEmpty())
        keep("BAND", QStringLiteral("is no band of the log"));
    if (c.band.isEmpty() && !freq.isEmpty())
        keep("FREQ", QStringLiteral("is in no band of the log"));
    if (!c.band.isEmpty())
        c.freq = r.has(AppFreq) ? r.value(AppFreq) : freqColumn(freq, c.band);
    const QString grid = take(u"GRIDSQUARE"_s).trimmed().toUpper();
    const QString gridExt = r.value(QStringLiteral("GRIDSQUARE_EXT")).trimmed().toUpper();
    if (Locator::isValid(grid)) {
        c.grid = grid;
        if (grid.size() == 8 && Locator::isValid(grid + gridExt)) {
            c.grid += gridExt;
            extJoined = true;
        }
    } else if (!grid.isEmpty()) {
        keep("GRIDSQUARE", QStringLiteral("is not a locator"));
    }
    const QString distance = take(u"DISTANCE"_s).trimmed();
    if (!distance.isEmpty()) {
        bool ok = false;
        const double km = distance.toDouble(&ok);
        if (!ok || km < 0)
            keep("DISTANCE", QStringLiteral("is not a number of km"));
        else if (c.grid.isEmpty())
            extra.append(
                { QStringLiteral("DISTANCE"), r.value(QStringLiteral("DISTANCE")) }); // no locator to go with
        else
            c.qrb = km;
    }
    const QString submode = take(u"SUBMODE"_s);
    c.mode = submode.isEmpty() ? take(u"MODE"_s) : submode;
    // The MODE of a submode that does not give it back is kept.
    const bool modeKept = !submode.isEmpty() && modeFields(submode).first != r.value(QStringLiteral("MODE"));
    c.rsts = take(u"RST_SENT"_s);
    c.rstr = take(u"RST_RCVD"_s);
    c.nam = take(u"NAME"_s);
    c.comment = take(u"COMMENT"_s);
    const QString sent = take(u"QSL_SENT"_s);
    const QString rcvd = take(u"QSL_RCVD"_s);
    c.qsl = r.has(AppQsl) ? r.value(AppQsl)
                          : qslLetter(sent, rcvd, r.value(QStringLiteral("LOTW_QSL_RCVD")),
                              r.value(QStringLiteral("EQSL_QSL_RCVD")));
    const QslStatus implied = qslStatus(c.qsl);
    if (implied.sent != sent || implied.rcvd != rcvd) {
        for (auto [name, value] : { std::pair { "QSL_SENT", sent }, std::pair { "QSL_RCVD", rcvd } }) {
            if (!value.isEmpty())
                extra.append({ QLatin1String(name), value });
        }
    }
    c.prop = r.has(AppProp) ? r.value(AppProp) : propCode(take(u"PROP_MODE"_s));
    c.dxcc = take(u"COUNTRY"_s);
    c.dxccNr = take(u"DXCC"_s).trimmed();
    c.qslman = take(u"QSL_VIA"_s);
    c.txPwr = take(u"TX_PWR"_s);
    c.antenna = take(u"MY_ANTENNA"_s);
    c.myCall = take(u"STATION_CALLSIGN"_s);
    if (c.myCall.isEmpty())
        c.myCall = r.value(QStringLiteral("OPERATOR")); // OPERATOR itself is kept as it is
    c.myGrid = take(u"MY_GRIDSQUARE"_s);
    c.contest = take(u"CONTEST_ID"_s);
    const QString stx = take(u"STX"_s);
    const QString srx = take(u"SRX"_s);
    c.nrSent = r.has(QStringLiteral("STX_STRING")) ? take(u"STX_STRING"_s) : stx;
    c.nrRcvd = r.has(QStringLiteral("SRX_STRING")) ? take(u"SRX_STRING"_s) : srx;
    c.qslSent = take(u"QSLSDATE"_s);
    c.qslRcvd = take(u"QSLRDATE"_s);
    c.cont = take(u"CONT"_s);
    for (auto [name, target] : { std::pair { "CQZ", &c.cqZone }, std::pair { "ITUZ", &c.ituZone } }) {
        const QString z = take(QLatin1String(name)).trimmed();
        if (isDigits(z))
            *target = QString::number(z.toInt());
        else if (!z.isEmpty())
            keep(name, QStringLiteral("is not a zone number"));
    }
    c.remarks = take(u"NOTES"_s);
    for (const auto& [name, value] : r.fields) {
        if (ConsumedFields.contains(name) || (name == QLatin1String("GRIDSQUARE_EXT") && extJoined)
            || (name == QLatin1String("MODE") && !modeKept))
            continue;
        // What an earlier export wrote as APP_KESTREL_<name> was the record's own <name>.
        const QString own = name.startsWith(AppPrefix) ? name.mid(AppPrefix.size()) : name;
        if (std::none_of(extra.cbegin(), extra.cend(), [&own](const auto& f) { return f.first == own; }))
            extra.append({ own, value });
    }
    // The claims of the station go to dxcc and dxccNr; setEntity decides.
    for (const auto& [name, target] : { std::pair { "COUNTRY", &c.dxcc }, std::pair { "DXCC", &c.dxccNr } }) {
        const auto at = std::find_if(
            extra.begin(), extra.end(), [name](const auto& f) { return f.first == QLatin1String(name); });
        if (at != extra.end()) {
            *target = at->second;
            extra.erase(at);
        }
    }
    c.adifExtra = extraText(extra);
    return true;
}

void setEntity(AdifContact& c, const DxccEntity& e)
{
    QList<QPair<QString, QString>> extra;
    const QString number = e.dxccNr > 0 ? QString::number(e.dxccNr) : QString();
    if (!c.dxcc.isEmpty() && c.dxcc != e.name)
        extra.append({ QStringLiteral("COUNTRY"), c.dxcc });
    if (!c.dxccNr.isEmpty() && c.dxccNr != number)
        extra.append({ QStringLiteral("DXCC"), c.dxccNr });
    if (!extra.isEmpty())
        c.adifExtra = extraText(extraFields(c.adifExtra) + extra);
    c.dxcc = e.name;
    c.dxccNr = number;
    if (c.cqZone.isEmpty() && e.cqZone > 0)
        c.cqZone = QString::number(e.cqZone);
    if (c.ituZone.isEmpty() && e.ituZone > 0)
        c.ituZone = QString::number(e.ituZone);
    if (c.cont.isEmpty())
        c.cont = e.continent;
}

} // namespace AdifMapping
