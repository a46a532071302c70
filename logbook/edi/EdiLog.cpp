#include "logbook/edi/EdiLog.h"

#include "logbook/edi/EdiLocator.h"

#include <QSet>

#include <array>

namespace {
struct BandRange {
    double lowMhz;
    double highMhz;
    const char* name;
};
// The band names of the format's PBand line, by the frequencies of each band.
constexpr std::array<BandRange, 15> Bands = { {
    { 50, 54, "50 MHz" },
    { 70, 71, "70 MHz" },
    { 144, 148, "144 MHz" },
    { 430, 440, "432 MHz" },
    { 1240, 1300, "1,3 GHz" },
    { 2300, 2450, "2,3 GHz" },
    { 3300, 3500, "3,4 GHz" },
    { 5650, 5850, "5,7 GHz" },
    { 10000, 10500, "10 GHz" },
    { 24000, 24250, "24 GHz" },
    { 47000, 47200, "47 GHz" },
    { 75500, 81000, "76 GHz" },
    { 122250, 123000, "122 GHz" },
    { 134000, 141000, "134 GHz" },
    { 241000, 250000, "241 GHz" },
} };

// The dupe key: the call as a contest robot compares it.
QString callKey(const QString& call)
{
    return call.trimmed().toUpper();
}

// "1" -> "001": numbers as the format shows them; other texts as they are.
QString serial(const QString& nr)
{
    const QString t = nr.trimmed();
    bool ok = false;
    const int n = t.toInt(&ok);
    return ok && n >= 0 ? QStringLiteral("%1").arg(n, 3, 10, QLatin1Char('0')) : t;
}

// A header value on one line (some values have ";"-separated parts, e.g. SAntH).
QString headerText(const QString& text)
{
    QString t = text.trimmed();
    t.remove(QLatin1Char('\r'));
    t.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return t;
}

// A field of a record: the format's separator cannot be quoted, so it goes.
QString field(const QString& text)
{
    return headerText(text).replace(QLatin1Char(';'), QLatin1Char(','));
}

// Two digits of "yyMMdd" or "HHmm", without the general date formatter (5 000 records).
void appendTwo(QString& out, int value)
{
    out += QChar(u'0' + value / 10 % 10);
    out += QChar(u'0' + value % 10);
}

// "2026-11-07 14:02": how the report names a contact.
QString when(const QDateTime& utc)
{
    return utc.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString mark(bool set, char letter)
{
    return set ? QString(QLatin1Char(letter)) : QString();
}
} // namespace

EdiLog::EdiLog(const EdiContest& contest, const QString& band, QList<EdiQso> qsos)
    : contest_(contest)
    , band_(band)
    , qsos_(std::move(qsos))
{
    score();
}

void EdiLog::score()
{
    const bool ownValid = EdiLocator::isValid(contest_.locator);
    if (!ownValid)
        problems_ << QStringLiteral("The own locator \"%1\" is not valid: no contact scores.")
                         .arg(contest_.locator);
    QSet<QString> calls;
    QSet<QString> squares;
    QSet<QString> exchanges;
    QSet<QString> dxccs;
    int best = -1;
    for (int i = 0; i < qsos_.size(); ++i) {
        EdiQso& q = qsos_[i];
        if (calls.contains(callKey(q.call))) {
            q.dupe = true;
            continue;
        }
        calls.insert(callKey(q.call));
        const QString loc = q.locator.trimmed();
        if (!EdiLocator::isValid(loc)) {
            problems_ << (loc.isEmpty()
                    ? QStringLiteral("%1 %2: no locator, scored 0.").arg(when(q.utc), q.call)
                    : QStringLiteral("%1 %2: locator \"%3\" is not valid, scored 0.")
                          .arg(when(q.utc), q.call, loc));
            continue;
        }
        if (loc.size() == 4)
            problems_ << QStringLiteral("%1 %2: 4-character locator %3, scored from the square's centre.")
                             .arg(when(q.utc), q.call, loc.toUpper());
        if (!ownValid)
            continue;
        // Scored on the 6 characters the file carries, as the contest robot will.
        q.points = EdiLocator::points(EdiLocator::distanceKm(contest_.locator.left(6), loc.left(6)));
        const QString square = loc.left(4).toUpper();
        q.newSquare = !squares.contains(square);
        squares.insert(square);
        const QString exchange = q.exchange.trimmed().toUpper();
        q.newExchange = !exchange.isEmpty() && !exchanges.contains(exchange);
        if (!exchange.isEmpty())
            exchanges.insert(exchange);
        const QString dxcc = q.dxcc.trimmed().toUpper();
        q.newDxcc = !dxcc.isEmpty() && !dxccs.contains(dxcc);
        if (!dxcc.isEmpty())
            dxccs.insert(dxcc);
        ++totals_.qsos;
        totals_.qsoPoints += q.points;
        if (best < 0 || q.points > qsos_[best].points)
            best = i;
    }
    totals_.squares = int(squares.size());
    totals_.exchanges = int(exchanges.size());
    totals_.dxccs = int(dxccs.size());
    totals_.squareBonus = totals_.squares * contest_.squareBonus;
    totals_.dxccBonus = totals_.dxccs * contest_.dxccBonus;
    totals_.score = totals_.qsoPoints + totals_.squareBonus + totals_.exchangeBonus + totals_.dxccBonus;
    if (contest_.squaresMultiply)
        totals_.score *= totals_.squares;
    if (contest_.dxccMultiplies)
        totals_.score *= totals_.dxccs;
    totals_.odx = best;
}

QByteArray EdiLog::text(const QString& version) const
{
    QString dates = contest_.dates;
    if (dates.isEmpty() && !qsos_.isEmpty())
        dates = qsos_.first().utc.toString(QStringLiteral("yyyyMMdd")) + QLatin1Char(';')
            + qsos_.last().utc.toString(QStringLiteral("yyyyMMdd"));
    QString odx;
    if (totals_.odx >= 0) {
        const EdiQso& q = qsos_[totals_.odx];
        odx = QStringLiteral("%1;%2;%3")
                  .arg(field(q.call).toUpper(), q.locator.trimmed().left(6).toUpper())
                  .arg(q.points);
    }
    const auto line = [](const char* key, const QString& value) {
        return QLatin1String(key) + QLatin1Char('=') + value + QLatin1String("\r\n");
    };
    QString out;
    out.reserve(200 + qsos_.size() * 60);
    out += QLatin1String("[REG1TEST;1]\r\n");
    out += line("TName", headerText(contest_.name));
    out += line("TDate", dates);
    out += line("PCall", headerText(contest_.call));
    out += line("PWWLo", headerText(contest_.locator.left(6)));
    out += line("PExch", headerText(contest_.exchange));
    out += line("PAdr1", QString());
    out += line("PAdr2", QString());
    out += line("PSect", headerText(contest_.section));
    out += line("PBand", band_);
    out += line("PClub", headerText(contest_.club));
    out += line("RName", headerText(contest_.operatorName));
    out += line("RCall", headerText(contest_.call));
    out += line("RAdr1", headerText(contest_.address1));
    out += line("RAdr2", headerText(contest_.address2));
    out += line("RPoCo", headerText(contest_.postCode));
    out += line("RCity", headerText(contest_.city));
    out += line("RCoun", headerText(contest_.country));
    out += line("RPhon", headerText(contest_.phone));
    out += line("RHBBS", headerText(contest_.email));
    out += line("MOpe1", headerText(contest_.operators));
    out += line("MOpe2", headerText(contest_.operators2));
    out += line("STXEq", headerText(contest_.transmitter));
    out += line("SPowe", headerText(contest_.power));
    out += line("SRXEq", headerText(contest_.receiver));
    out += line("SAnte", headerText(contest_.antenna));
    out += line("SAntH", headerText(contest_.antennaHeight));
    out += line("CQSOs", QStringLiteral("%1;1").arg(totals_.qsos));
    out += line("CQSOP", QString::number(totals_.qsoPoints));
    out += line("CWWLs",
        QStringLiteral("%1;%2;%3")
            .arg(totals_.squares)
            .arg(contest_.squareBonus)
            .arg(int(contest_.squaresMultiply)));
    out += line("CWWLB", QString::number(totals_.squareBonus));
    out += line("CExcs", QStringLiteral("%1;0;0").arg(totals_.exchanges));
    out += line("CExcB", QString::number(totals_.exchangeBonus));
    out += line("CDXCs",
        QStringLiteral("%1;%2;%3")
            .arg(totals_.dxccs)
            .arg(contest_.dxccBonus)
            .arg(int(contest_.dxccMultiplies)));
    out += line("CDXCB", QString::number(totals_.dxccBonus));
    out += line("CToSc", QString::number(totals_.score));
    out += line("CODXC", odx);
    out += QLatin1String("[Remarks]\r\n");
    for (const QString& remark : contest_.remarks.split(QLatin1Char('|'), Qt::SkipEmptyParts))
        out += remark.trimmed() + QLatin1String("\r\n");
    out += QStringLiteral("[QSORecords;%1]\r\n").arg(qsos_.size());
    for (const EdiQso& q : qsos_) {
        const QString loc = q.locator.trimmed();
        const QDate d = q.utc.date();
        const QTime t = q.utc.time();
        appendTwo(out, d.year() % 100);
        appendTwo(out, d.month());
        appendTwo(out, d.day());
        out += QLatin1Char(';');
        appendTwo(out, t.hour());
        appendTwo(out, t.minute());
        out += QLatin1Char(';');
        const QString fields[] = {
            field(q.call).toUpper(),
            QString::number(modeCode(q.mode)),
            field(q.rstSent),
            serial(field(q.nrSent)),
            field(q.rstRcvd),
            serial(field(q.nrRcvd)),
            field(q.exchange),
            EdiLocator::isValid(loc) ? loc.left(6).toUpper() : QString(),
            QString::number(q.points),
            mark(q.newExchange, 'N'),
            mark(q.newSquare, 'N'),
            mark(q.newDxcc, 'N'),
            mark(q.dupe, 'D'),
        };
        for (const QString& f : fields)
            out += f + QLatin1Char(';');
        out.chop(1);
        out += QLatin1String("\r\n");
    }
    out += QStringLiteral("[END;Kestrel %1]\r\n").arg(version);
    return out.toLatin1();
}

QString EdiLog::bandName(const QString& bandText)
{
    QString t = bandText.trimmed();
    t.remove(QLatin1Char('%'));
    if (t == QLatin1String("34")) // the 9 cm button's pattern
        return QStringLiteral("3,4 GHz");
    bool ok = false;
    const double mhz = t.toDouble(&ok);
    if (!ok)
        return QString();
    for (const BandRange& b : Bands) {
        if (mhz >= b.lowMhz && mhz <= b.highMhz)
            return QLatin1String(b.name);
    }
    return QString();
}

int EdiLog::modeCode(const QString& mode)
{
    const QString m = mode.trimmed().toUpper();
    if (m == QLatin1String("SSB") || m == QLatin1String("USB") || m == QLatin1String("LSB"))
        return 1;
    if (m == QLatin1String("CW"))
        return 2;
    if (m == QLatin1String("AM"))
        return 5;
    if (m == QLatin1String("FM"))
        return 6;
    if (m == QLatin1String("RTTY"))
        return 7;
    if (m == QLatin1String("SSTV"))
        return 8;
    if (m == QLatin1String("ATV"))
        return 9;
    return 0;
}
