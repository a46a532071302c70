#include "mapexport/SquareMap.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <QSaveFile>
#include <QXmlStreamWriter>

namespace {
const char* const StatusName[] = { "worked", "confirmed" };

// The square's outline, counter-clockwise from the south-west corner: 2 degrees by 1.
QString outline(const QString& square)
{
    const int lon = -180 + (square[0].unicode() - 'A') * 20 + (square[2].unicode() - '0') * 2;
    const int lat = -90 + (square[1].unicode() - 'A') * 10 + (square[3].unicode() - '0');
    return QStringLiteral("%1,%2,0 %3,%2,0 %3,%4,0 %1,%4,0 %1,%2,0")
        .arg(lon)
        .arg(lat)
        .arg(lon + 2)
        .arg(lat + 1);
}

void style(QXmlStreamWriter& x, const char* id, const char* line, const char* fill)
{
    x.writeStartElement(QStringLiteral("Style"));
    x.writeAttribute(QStringLiteral("id"), QLatin1String(id));
    x.writeStartElement(QStringLiteral("LineStyle"));
    x.writeTextElement(QStringLiteral("color"), QLatin1String(line));
    x.writeEndElement();
    x.writeStartElement(QStringLiteral("PolyStyle"));
    x.writeTextElement(QStringLiteral("color"), QLatin1String(fill));
    x.writeEndElement();
    x.writeEndElement();
}

QString bandLine(const SquareTally& tally, const QString& band)
{
    return QStringLiteral("%1: %2 squares, %3 confirmed")
        .arg(band)
        .arg(tally.worked(band))
        .arg(tally.confirmed(band));
}
} // namespace

namespace SquareMap {

QByteArray document(const SquareTally& tally, const QString& title)
{
    QByteArray out;
    QXmlStreamWriter x(&out);
    x.setAutoFormatting(true);
    x.writeStartDocument();
    x.writeDefaultNamespace(QStringLiteral("http://www.opengis.net/kml/2.2"));
    x.writeStartElement(QStringLiteral("kml"));
    x.writeStartElement(QStringLiteral("Document"));
    x.writeTextElement(QStringLiteral("name"), title);
    // KML colours are aabbggrr: worked yellow, confirmed green, both half transparent.
    style(x, StatusName[0], "ff00ffff", "8000ffff");
    style(x, StatusName[1], "ff00ff00", "8000ff00");
    for (auto band = tally.bands().begin(); band != tally.bands().end(); ++band) {
        x.writeStartElement(QStringLiteral("Folder"));
        x.writeTextElement(QStringLiteral("name"), bandLine(tally, band.key()));
        for (auto sq = band.value().begin(); sq != band.value().end(); ++sq) {
            const QString status = QLatin1String(StatusName[int(sq.value())]);
            x.writeStartElement(QStringLiteral("Placemark"));
            x.writeTextElement(QStringLiteral("name"), sq.key());
            x.writeTextElement(QStringLiteral("description"), band.key() + QLatin1Char(' ') + status);
            x.writeTextElement(QStringLiteral("styleUrl"), QLatin1Char('#') + status);
            x.writeStartElement(QStringLiteral("Polygon"));
            x.writeStartElement(QStringLiteral("outerBoundaryIs"));
            x.writeStartElement(QStringLiteral("LinearRing"));
            x.writeTextElement(QStringLiteral("coordinates"), outline(sq.key()));
            x.writeEndElement();
            x.writeEndElement();
            x.writeEndElement();
            x.writeEndElement();
        }
        x.writeEndElement();
    }
    x.writeEndDocument();
    return out;
}

bool write(const QString& connection, const QString& bandPattern, const QString& path, const QString& title,
    SquareTally* tally, QString* report)
{
    Recordset rs(connection);
    rs.setFilter(SqlText::logListFilter(bandPattern));
    if (!rs.open(SqlText::LogList) || rs.recordCount() < 0 || rs.hasError()) {
        *report = QStringLiteral("The log cannot be read: %1").arg(rs.errorText());
        return false;
    }
    const int band = rs.fieldIndex(QStringLiteral("Band")), grid = rs.fieldIndex(QStringLiteral("Grid")),
              qsl = rs.fieldIndex(QStringLiteral("QSL")), extra = rs.fieldIndex(QStringLiteral("AdifExtra"));
    const auto text
        = [&rs](int row, int field) { return field < 0 ? QString() : rs.valueAt(row, field).toString(); };
    for (int row = 0; row < rs.recordCount(); ++row)
        tally->add(text(row, band), text(row, grid), text(row, qsl), text(row, extra));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(document(*tally, title)) < 0 || !file.commit()) {
        *report = QStringLiteral("The square map cannot be written: %1 (%2)").arg(path, file.errorString());
        return false;
    }
    QStringList lines;
    for (auto it = tally->bands().begin(); it != tally->bands().end(); ++it)
        lines << bandLine(*tally, it.key());
    if (lines.isEmpty())
        lines << QStringLiteral("No contact with a valid locator: the map is empty.");
    *report = lines.join(QLatin1Char('\n'));
    return true;
}

} // namespace SquareMap
