#include "logbook/adif/AdifMapping.h"

#include "geo/Locator.h"
#include "logbook/adif/AdifBands.h"
#include "logbook/entry/LogClock.h"

namespace {

const QString AppBand = QStringLiteral("APP_KESTREL_BAND");
const QString AppQsl = QStringLiteral("APP_KESTREL_QSL");
const QString AppProp = QStringLiteral("APP_KESTREL_PROP");
const QString AppFreq = QStringLiteral("APP_KESTREL_FREQ");

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

QString dateFromAdif(const QString& adif)
{
    const QDate d = LogClock::compactDate(adif.trimmed());
    return d.isValid() ? LogClock::storedDate(d) : QString();
}

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

QString qslLetter(const QString& sent, const QString& rcvd)
{
    const QString s = sent.trimmed().toUpper();
    const QString r = rcvd.trimmed().toUpper();
    if (r == QLatin1String("Y") || r == QLatin1String("V"))
        return s == QLatin1String("Y") ? QStringLiteral("Q") : QStringLiteral("T");
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

QByteArray recordText(const AdifContact& c)
{
    const AdifBand band = AdifBands::fromBandText(c.band);
    const QString freq = c.freq.isEmpty() ? band.freq : c.freq;
    QString bandName = band.band;
    if (bandName.isEmpty() && !freq.isEmpty())
        bandName = AdifBands::bandOfFrequency(freq.toDouble());
    const auto [mode, submode] = modeFields(c.mode);
    const QslStatus qsl = qslStatus(c.qsl);
    const QString prop = propMode(c.prop);

    QByteArray out;
    out.reserve(400);
    appendField(out, "CALL", c.callsign);
    appendField(out, "QSO_DATE", dateToAdif(c.date));
    appendField(out, "TIME_ON", timeToAdif(c.gmt));
    appendField(out, "BAND", bandName);
    appendField(out, "FREQ", freq);
    appendField(out, "MODE", mode);
    appendField(out, "SUBMODE", submode);
    appendField(out, "RST_SENT", c.rsts);
    appendField(out, "RST_RCVD", c.rstr);
    appendField(out, "GRIDSQUARE", c.grid);
    appendField(out, "NAME", c.nam);
    appendField(out, "COMMENT", c.comment);
    appendField(out, "QSL_SENT", qsl.sent);
    appendField(out, "QSL_RCVD", qsl.rcvd);
    appendField(out, "PROP_MODE", prop);
    appendField(out, "COUNTRY", c.dxcc);
    appendField(out, "DISTANCE", numberText(c.qrb));
    appendField(out, "QSL_VIA", c.qslman);
    appendField(out, "TX_PWR", c.txPwr);
    appendField(out, "MY_ANTENNA", c.antenna);
    appendField(out, "STATION_CALLSIGN", c.myCall);
    appendField(out, "MY_GRIDSQUARE", c.myGrid);
    appendField(out, "CONTEST_ID", c.contest);
    appendField(out, isDigits(c.nrSent) ? "STX" : "STX_STRING", c.nrSent);
    appendField(out, isDigits(c.nrRcvd) ? "SRX" : "SRX_STRING", c.nrRcvd);
    appendField(out, "QSLSDATE", c.qslSent);
    appendField(out, "QSLRDATE", c.qslRcvd);
    appendField(out, "CONT", c.cont);
    appendField(out, "CQZ", c.cqZone);
    appendField(out, "ITUZ", c.ituZone);
    appendField(out, "NOTES", c.remarks);
    // What the standard fields would not give back exactly.
    if (AdifBands::bandTextFor(bandName, freq) != c.band)
        appendField(out, "APP_KESTREL_BAND", c.band);
    if (qslLetter(qsl.sent, qsl.rcvd) != c.qsl)
        appendField(out, "APP_KESTREL_QSL", c.qsl);
    if (propCode(prop) != c.prop)
        appendField(out, "APP_KESTREL_PROP", c.prop);
    if (freqColumn(freq, c.band) != c.freq)
        appendField(out, "APP_KESTREL_FREQ", c.freq);
    out += "<EOR>\n";
    return out;
}

bool toContact(const AdifRecord& r, AdifContact& c, QString* reason)
{
    auto refuse = [reason](const QString& why) {
        if (reason)
            *reason = why;
        return false;
    };
    c = AdifContact();
    if (!r.error.isEmpty())
        return refuse(r.error);
    c.callsign = r.value(QStringLiteral("CALL")).trimmed().toUpper();
    if (c.callsign.isEmpty())
        return refuse(QStringLiteral("no CALL"));
    const QString date = r.value(QStringLiteral("QSO_DATE"));
    c.date = dateFromAdif(date);
    if (c.date.isEmpty())
        return refuse(date.isEmpty() ? QStringLiteral("no QSO_DATE")
                                     : QStringLiteral("QSO_DATE \"%1\" is not a date (YYYYMMDD)").arg(date));
    const QString time = r.value(QStringLiteral("TIME_ON"));
    c.gmt = timeFromAdif(time);
    if (c.gmt.isEmpty())
        return refuse(time.isEmpty()
                ? QStringLiteral("no TIME_ON")
                : QStringLiteral("TIME_ON \"%1\" is not a time (HHMM or HHMMSS)").arg(time));
    const QString bandName = r.value(QStringLiteral("BAND"));
    const QString freq = r.value(QStringLiteral("FREQ")).trimmed();
    c.band = r.has(AppBand) ? r.value(AppBand) : AdifBands::bandTextFor(bandName, freq);
    if (c.band.isEmpty())
        return refuse(bandName.isEmpty() && freq.isEmpty()
                ? QStringLiteral("no BAND and no FREQ")
                : QStringLiteral("band \"%1\" / frequency \"%2\" is not an amateur band")
                      .arg(bandName, freq));
    c.freq = r.has(AppFreq) ? r.value(AppFreq) : freqColumn(freq, c.band);
    c.grid = r.value(QStringLiteral("GRIDSQUARE")).trimmed().toUpper();
    if (!c.grid.isEmpty() && !Locator::isValid(c.grid))
        return refuse(
            QStringLiteral("GRIDSQUARE \"%1\" is not a locator").arg(r.value(QStringLiteral("GRIDSQUARE"))));
    const QString distance = r.value(QStringLiteral("DISTANCE")).trimmed();
    if (!distance.isEmpty()) {
        bool ok = false;
        const double km = distance.toDouble(&ok);
        if (!ok || km < 0)
            return refuse(QStringLiteral("DISTANCE \"%1\" is not a number of km").arg(distance));
        c.qrb = km;
    }
    const QString submode = r.value(QStringLiteral("SUBMODE"));
    c.mode = submode.isEmpty() ? r.value(QStringLiteral("MODE")) : submode;
    c.rsts = r.value(QStringLiteral("RST_SENT"));
    c.rstr = r.value(QStringLiteral("RST_RCVD"));
    c.nam = r.value(QStringLiteral("NAME"));
    c.comment = r.value(QStringLiteral("COMMENT"));
    c.qsl = r.has(AppQsl)
        ? r.value(AppQsl)
        : qslLetter(r.value(QStringLiteral("QSL_SENT")), r.value(QStringLiteral("QSL_RCVD")));
    c.prop = r.has(AppProp) ? r.value(AppProp) : propCode(r.value(QStringLiteral("PROP_MODE")));
    c.dxcc = r.value(QStringLiteral("COUNTRY"));
    c.qslman = r.value(QStringLiteral("QSL_VIA"));
    c.txPwr = r.value(QStringLiteral("TX_PWR"));
    c.antenna = r.value(QStringLiteral("MY_ANTENNA"));
    c.myCall = r.value(QStringLiteral("STATION_CALLSIGN"));
    if (c.myCall.isEmpty())
        c.myCall = r.value(QStringLiteral("OPERATOR"));
    c.myGrid = r.value(QStringLiteral("MY_GRIDSQUARE"));
    c.contest = r.value(QStringLiteral("CONTEST_ID"));
    c.nrSent = r.has(QStringLiteral("STX_STRING")) ? r.value(QStringLiteral("STX_STRING"))
                                                   : r.value(QStringLiteral("STX"));
    c.nrRcvd = r.has(QStringLiteral("SRX_STRING")) ? r.value(QStringLiteral("SRX_STRING"))
                                                   : r.value(QStringLiteral("SRX"));
    c.qslSent = r.value(QStringLiteral("QSLSDATE"));
    c.qslRcvd = r.value(QStringLiteral("QSLRDATE"));
    c.cont = r.value(QStringLiteral("CONT"));
    for (auto [name, target] : { std::pair { "CQZ", &c.cqZone }, std::pair { "ITUZ", &c.ituZone } }) {
        const QString z = r.value(QLatin1String(name)).trimmed();
        if (isDigits(z))
            *target = QString::number(z.toInt());
    }
    c.remarks = r.value(QStringLiteral("NOTES"));
    return true;
}

} // namespace AdifMapping
