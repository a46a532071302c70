#include "gps/GpsDisplay.h"

#include <QStringList>

namespace GpsDisplay {

QString numberText(double v)
{
    QString s = QString::number(v, 'f', 8);
    while (s.endsWith(u'0'))
        s.chop(1);
    if (s.endsWith(u'.'))
        s.chop(1);
    return s == u"-0" ? QStringLiteral("0") : s;
}

QString unitText(const QString& unit)
{
    return unit == u"M" ? QStringLiteral("m") : unit;
}

QString selectionText(bool automatic)
{
    return automatic ? QStringLiteral("A") : QStringLiteral("M");
}

QString validityText(bool valid)
{
    return valid ? QStringLiteral("A") : QStringLiteral("V");
}

QString entryText(const std::optional<int>& v)
{
    return v ? QString::number(*v) : QString();
}

QString gsvGroups(const GsvData& gsv)
{
    QStringList groups;
    for (int k = 1; k <= 4; ++k) {
        const int slot = (gsv.messageNumber - 1) * 4 + k;
        if (slot < 1 || slot >= int(gsv.prn.size()) || !gsv.prn[slot])
            continue;
        QStringList values;
        for (const GsvTable* t : { &gsv.prn, &gsv.elevation, &gsv.azimuth, &gsv.snr })
            values << ((*t)[slot] ? QString::number(*(*t)[slot]) : QStringLiteral("-"));
        groups << values.join(u' ');
    }
    return groups.isEmpty() ? QString() : u'[' + groups.join(QStringLiteral("] [")) + u']';
}

QString usedText(const GpsReceiver& receiver)
{
    QStringList lines;
    for (auto it = receiver.used().cbegin(); it != receiver.used().cend(); ++it) {
        if (it->satellites.isEmpty())
            continue;
        QString line = GpsReceiver::systemName(it.key());
        for (int prn : it->satellites)
            line += u' ' + QString::number(prn);
        if (receiver.isStale(*it))
            line += QStringLiteral(" (stale)");
        lines << line;
    }
    return lines.join(u'\n');
}

QString gridText(FixKind fix, const std::optional<GpsPosition>& position)
{
    if (fix == FixKind::None || !position)
        return QStringLiteral("GPS NO FIX");
    return PositionToLocator(*position) + QStringLiteral("   ") + PositionText(*position);
}

int gridColour(FixKind fix)
{
    switch (fix) {
    case FixKind::ThreeD:
        return kThreeDColour;
    case FixKind::TwoD:
        return kTwoDColour;
    case FixKind::None:
        break;
    }
    return kNoFixColour;
}

} // namespace GpsDisplay
