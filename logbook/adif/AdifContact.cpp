#include "logbook/adif/AdifContact.h"

namespace {

// The text members in the order of columns(); QRB and QTF are numbers.
using TextMember = QString AdifContact::*;
constexpr TextMember Texts[] = { &AdifContact::date, &AdifContact::gmt, &AdifContact::callsign,
    &AdifContact::grid, &AdifContact::rsts, &AdifContact::rstr, &AdifContact::band, &AdifContact::mode,
    &AdifContact::nam, &AdifContact::comment, &AdifContact::qsl, &AdifContact::prop, &AdifContact::dxcc,
    nullptr, nullptr, &AdifContact::qslman, &AdifContact::freq, &AdifContact::txPwr, &AdifContact::antenna,
    &AdifContact::myCall, &AdifContact::myGrid, &AdifContact::contest, &AdifContact::nrSent,
    &AdifContact::nrRcvd, &AdifContact::qslSent, &AdifContact::qslRcvd, &AdifContact::cont,
    &AdifContact::cqZone, &AdifContact::ituZone, &AdifContact::remarks, &AdifContact::geData,
    &AdifContact::geGridXY, &AdifContact::dxccNr, &AdifContact::adifExtra };

} // namespace

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

AdifContact::Cell AdifContact::cell(int column) const
{
    auto text = [](const QString& t) { return t.isNull() ? Cell() : Cell { Cell::Kind::Text, &t }; };
    auto integer = [](const QString& z) {
        return z.isEmpty() ? Cell() : Cell { Cell::Kind::Integer, nullptr, z.toInt() };
    };
    auto number = [](const QVariant& v) {
        return v.isValid() ? Cell { Cell::Kind::Number, nullptr, 0, v.toDouble() } : Cell();
    };
    switch (column) {
    case 13:
        return number(qrb);
    case 14:
        return number(qtf);
    case 27:
        return integer(cqZone);
    case 28:
        return integer(ituZone);
    case 32:
        return integer(dxccNr);
    case 33:
        return adifExtra.isEmpty() ? Cell() : text(adifExtra);
    default:
        return column >= 0 && column < int(std::size(Texts)) ? text(this->*Texts[column]) : Cell();
    }
}

void AdifContact::setValue(int column, const QVariant& v)
{
    if (column == 13)
        qrb = v;
    else if (column == 14)
        qtf = v;
    else if (column >= 0 && column < int(std::size(Texts)))
        this->*Texts[column] = v.toString();
}
