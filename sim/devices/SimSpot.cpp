#include "sim/devices/SimSpot.h"

QString SimSpot::line(const QTime& utc) const
{
    return QStringLiteral("DX de %1 %2  %3  %4  %5Z")
        .arg((spotter + QLatin1Char(':')).leftJustified(10))
        .arg(QString::number(frequencyKhz, 'f', 1).rightJustified(9))
        .arg(call.leftJustified(12))
        .arg(comment.leftJustified(30))
        .arg(utc.toString(QStringLiteral("HHmm")));
}

SimSpotSource::SimSpotSource()
    : spots_ {
        { QStringLiteral("DL1SIM"), 144300.0, QStringLiteral("OK1SIM"), QStringLiteral("JN79 tropo 559") },
        { QStringLiteral("G4SIM"), 50125.0, QStringLiteral("EA8SIM"), QStringLiteral("IL18 Es CW 579") },
        { QStringLiteral("PA0SIM"), 432200.0, QStringLiteral("SM6SIM"), QStringLiteral("JO57 tropo") },
        { QStringLiteral("F5SIM"), 1296200.0, QStringLiteral("HB9SIM"), QStringLiteral("JN47 rain scatter") },
        { QStringLiteral("OE3SIM"), 10368100.0, QStringLiteral("S51SIM"), QStringLiteral("JN76 RS") },
        { QStringLiteral("SP9SIM"), 144050.0, QStringLiteral("YO2SIM"), QStringLiteral("KN05 MS") },
    }
{
}

SimSpot SimSpotSource::next()
{
    return spots_.at(count_++ % spots_.size());
}
