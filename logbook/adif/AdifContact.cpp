#include "logbook/adif/AdifContact.h"

const QStringList& AdifContact::columns()
{
    static const QStringList names = { "Date", "GMT", "Callsign", "Grid", "rsts", "rstr", "Band", "mode",
        "Nam", "Comment", "QSL", "Prop", "DXCC", "QRB", "QTF", "QSLman", "Freq", "TxPwr", "Antenna", "MyCall",
        "MyGrid", "Contest", "NrSent", "NrRcvd", "QSLsent", "QSLrcvd", "Cont", "CQZone", "ITUZone", "Remarks",
        "GEdata", "GEgridXY", "DxccNr", "AdifExtra" };
    return names;
}

QVariantList AdifContact::values() const
{
    auto number = [](const QString& z) { return z.isEmpty() ? QVariant() : QVariant(z.toInt()); };
    return { date, gmt, callsign, grid, rsts, rstr, band, mode, nam, comment, qsl, prop, dxcc, qrb, qtf,
        qslman, freq, txPwr, antenna, myCall, myGrid, contest, nrSent, nrRcvd, qslSent, qslRcvd, cont,
        number(cqZone), number(ituZone), remarks, geData, geGridXY, number(dxccNr),
        adifExtra.isEmpty() ? QVariant() : QVariant(adifExtra) };
}

void AdifContact::setValue(int column, const QVariant& v)
{
    QString* texts[] = { &date, &gmt, &callsign, &grid, &rsts, &rstr, &band, &mode, &nam, &comment, &qsl,
        &prop, &dxcc, nullptr, nullptr, &qslman, &freq, &txPwr, &antenna, &myCall, &myGrid, &contest, &nrSent,
        &nrRcvd, &qslSent, &qslRcvd, &cont, &cqZone, &ituZone, &remarks, &geData, &geGridXY, &dxccNr,
        &adifExtra };
    if (column == 13)
        qrb = v;
    else if (column == 14)
        qtf = v;
    else if (column >= 0 && column < int(std::size(texts)))
        *texts[column] = v.toString();
}
