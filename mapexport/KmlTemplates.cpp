#include "mapexport/KmlTemplates.h"

#include "core/ReplaceText.h"

#include <algorithm>
#include <cstdio>

namespace {

void appendLatin(QByteArray& out, const char* text)
{
    out.append(text);
}

void appendReference(QByteArray& out, char32_t code)
{
    char buf[16];
    const int n = std::snprintf(buf, sizeof buf, "&#%u;", static_cast<unsigned>(code));
    out.append(buf, n);
}

QString fill(const QString& transparency, const char* rest)
{
    return QLatin1Char('#') + Kml::alpha(transparency) + QLatin1String(rest);
}

void appendEscapedSlow(QByteArray& out, QStringView value)
{
    const qsizetype n = value.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = value[i].unicode();
        if (c < 0x80) {
            if (c == u'&')
                out.append("&amp;", 5);
            else if (c == u'<')
                out.append("&lt;", 4);
            else if (c == u'>')
                out.append("&gt;", 4);
            else if (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r')
                out.append('?'); // not allowed in XML 1.0 at all
            else
                out.append(static_cast<char>(c));
        } else if (QChar::isHighSurrogate(c) && i + 1 < n && QChar::isLowSurrogate(value[i + 1].unicode())) {
            appendReference(out, QChar::surrogateToUcs4(c, value[i + 1].unicode()));
            ++i;
        } else if (QChar::isSurrogate(c) || c == 0xFFFE || c == 0xFFFF) {
            out.append('?');
        } else {
            appendReference(out, c);
        }
    }
}

} // namespace

namespace Kml {

QString outputPath()
{
    // deliberate: the replacement works on an empty text, so the folder never applies.
    return ReplaceText(QString(), QStringLiteral("\\\\"), QStringLiteral("c:\\MyDocuments\\"))
        + QStringLiteral("earth.kml");
}

void appendEscaped(QByteArray& out, QStringView value)
{
    // Fast path for the usual plain ASCII text: one byte per character, copied in place.
    const qsizetype start = out.size();
    const qsizetype n = value.size();
    out.resize(start + n);
    char* p = out.data() + start;
    const char16_t* s = value.utf16();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = s[i];
        if (c < 0x20 || c >= 0x80 || c == u'&' || c == u'<' || c == u'>') {
            out.resize(start + i);
            appendEscapedSlow(out, value.sliced(i));
            return;
        }
        p[i] = static_cast<char>(c);
    }
}

QByteArray escaped(QStringView value)
{
    QByteArray out;
    out.reserve(value.size());
    appendEscaped(out, value);
    return out;
}

QByteArray root()
{
    return QByteArrayLiteral("<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n");
}

QByteArray documentOpen()
{
    return QByteArrayLiteral("<Document>\r\n");
}

QByteArray documentClose()
{
    return QByteArrayLiteral("</Document></kml>\r\n");
}

void appendHomePlacemark(QByteArray& out, QStringView callsign, QStringView home)
{
    appendLatin(out, "<Placemark><name> ");
    appendEscaped(out, callsign);
    appendLatin(out, "</name><Point><coordinates>");
    appendEscaped(out, home);
    appendLatin(out, "</coordinates></Point></Placemark>\r\n");
}

// Both record kinds open alike, up to the point's coordinates.
static void appendRecordHead(QByteArray& out, QStringView documentName, QStringView name, QStringView geData,
    QStringView fill, QStringView gridXY)
{
    appendLatin(out, "<name>");
    appendEscaped(out, documentName);
    appendLatin(out, "</name><Placemark><name>");
    appendEscaped(out, name);
    appendLatin(out, "</name><description>");
    appendEscaped(out, geData);
    appendLatin(out, "</description><Style><PolyStyle><color>");
    appendEscaped(out, fill);
    appendLatin(out, "</color></PolyStyle></Style> <MultiGeometry><Point><coordinates>");
    appendEscaped(out, gridXY);
}

void appendLogRecord(QByteArray& out, const LogRecordFields& f)
{
    appendRecordHead(out, f.documentName, f.grid, f.geData, f.fill, f.gridXY);
    appendLatin(out,
        "</coordinates></Point><Polygon><altitudeMode>relativeToGround</altitudeMode>"
        "<outerBoundaryIs><LinearRing><coordinates>");
    appendEscaped(out, f.poly);
    appendLatin(
        out, "</coordinates></LinearRing></outerBoundaryIs></Polygon></MultiGeometry></Placemark>\r\n");
}

void appendBeaconRecord(QByteArray& out, const BeaconRecordFields& f)
{
    appendRecordHead(out, f.documentName, f.name, f.geData, f.fill, f.gridXY);
    // deliberate: the beacon polygon has no boundary, so only the point shows.
    appendLatin(out,
        "</coordinates></Point><Polygon><altitudeMode>relativeToGround</altitudeMode></Polygon>"
        " </MultiGeometry> </Placemark>");
}

static void appendLineStart(QByteArray& out, QStringView home, QStringView gridXY, QStringView colour)
{
    appendLatin(out, "<Placemark> <LineString>  <coordinates>");
    appendEscaped(out, home);
    out.append(' ');
    appendEscaped(out, gridXY);
    appendLatin(out, "</coordinates> </LineString><Style><LineStyle><color>");
    appendEscaped(out, colour);
}

void appendLogLine(QByteArray& out, QStringView home, QStringView gridXY, QStringView colour)
{
    appendLineStart(out, home, gridXY, colour);
    appendLatin(out, "</color><width>2</width></LineStyle></Style></Placemark>");
}

void appendBeaconLine(QByteArray& out, QStringView home, QStringView gridXY, QStringView colour)
{
    appendLineStart(out, home, gridXY, colour);
    appendLatin(out, " </color><width>2</width></LineStyle></Style></Placemark>");
}

QString alpha(const QString& transparency)
{
    bool ok = false;
    const qlonglong value = transparency.trimmed().toLongLong(&ok);
    // Always two digits: a colour reader takes "#A00ffff" as something else or nothing.
    return QStringLiteral("%1")
        .arg(ok && value >= 0 ? std::min<qlonglong>(value, 255) : 128, 2, 16, QLatin1Char('0'))
        .toUpper();
}

QString yellowFill(const QString& transparency)
{
    return fill(transparency, "00ffff");
}

QString redFill(const QString& transparency)
{
    return fill(transparency, "0000ff");
}

QString lineColourFor(QStringView prop, const QString& previous)
{
    if (prop == u"Rs")
        return QStringLiteral("#ffff0000");
    if (prop == u"Tr")
        return QStringLiteral("#ff0000ff");
    if (prop == u"Es")
        return QStringLiteral("#ff00ff00");
    if (prop == u"Au")
        return QStringLiteral("#ffff0080");
    if (prop == u"Ms")
        return QStringLiteral("#ff707070");
    // Nothing to keep yet: a line gets KML's own default colour, never an empty one.
    return previous.isEmpty() ? QString::fromUtf16(defaultLineColour) : previous;
}

QString squareRing(int west, int south, int east, int north)
{
    const auto point = [](int x, int y) {
        return QString::number(x) + QStringLiteral(".0,") + QString::number(y) + QStringLiteral(".0,2000 ");
    };
    return point(west, south) + point(east, south) + point(east, north) + point(west, north)
        + point(west, south);
}

} // namespace Kml
