#include "mapexport/KmlTemplates.h"

#include <gtest/gtest.h>

namespace {

QByteArray homeOf(const QString& call, const QString& home)
{
    QByteArray out;
    Kml::appendHomePlacemark(out, call, home);
    return out;
}

} // namespace

TEST(KmlTemplates, SkeletonBytes)
{
    EXPECT_EQ(Kml::outputPath(), "earth.kml");
    EXPECT_EQ(Kml::root(), "<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n");
    EXPECT_EQ(Kml::documentOpen(), "<Document>\r\n");
    EXPECT_EQ(Kml::documentClose(), "</Document></kml>\r\n");
    EXPECT_EQ(homeOf("N0CALL", "9.58333333333333,48.2916666666667"),
        "<Placemark><name> N0CALL</name><Point><coordinates>9.58333333333333,48.2916666666667"
        "</coordinates></Point></Placemark>\r\n");
    EXPECT_EQ(homeOf("", ""),
        "<Placemark><name> </name><Point><coordinates></coordinates></Point></Placemark>\r\n");
}

TEST(KmlTemplates, LogRecordAndItsLine)
{
    QByteArray out;
    Kml::appendLogRecord(out, { u"DOC", u"JN48", u"Log: X", u"#8000ffff", u"8.5,48.2", u"RING " });
    EXPECT_EQ(out,
        "<name>DOC</name><Placemark><name>JN48</name><description>Log: X</description><Style><PolyStyle>"
        "<color>#8000ffff</color></PolyStyle></Style> <MultiGeometry><Point><coordinates>8.5,48.2"
        "</coordinates></Point><Polygon><altitudeMode>relativeToGround</altitudeMode><outerBoundaryIs>"
        "<LinearRing><coordinates>RING </coordinates></LinearRing></outerBoundaryIs></Polygon>"
        "</MultiGeometry></Placemark>\r\n");
    out.clear();
    Kml::appendLogLine(out, u"1,2", u"3,4", u"#ffff0000");
    EXPECT_EQ(out,
        "<Placemark> <LineString>  <coordinates>1,2 3,4</coordinates> </LineString><Style><LineStyle>"
        "<color>#ffff0000</color><width>2</width></LineStyle></Style></Placemark>");
}

TEST(KmlTemplates, BeaconRecordAndItsLineHaveNoLineBreak)
{
    QByteArray out;
    Kml::appendBeaconRecord(out, { u"N0CALL  BeaconsAFB", u"XX0BCN", u"Beacon:", u"#8000ffff", u"1,2" });
    EXPECT_EQ(out,
        "<name>N0CALL  BeaconsAFB</name><Placemark><name>XX0BCN</name><description>Beacon:</description>"
        "<Style><PolyStyle><color>#8000ffff</color></PolyStyle></Style> "
        "<MultiGeometry><Point><coordinates>1,2"
        "</coordinates></Point><Polygon><altitudeMode>relativeToGround</altitudeMode></Polygon> "
        "</MultiGeometry>"
        " </Placemark>");
    out.clear();
    Kml::appendBeaconLine(out, u"", u"1,2", u"#ff0000ff");
    EXPECT_EQ(out,
        "<Placemark> <LineString>  <coordinates> 1,2</coordinates> </LineString><Style><LineStyle>"
        "<color>#ff0000ff </color><width>2</width></LineStyle></Style></Placemark>");
}

TEST(KmlTemplates, ValuesAreEscapedIntoSingleBytes)
{
    EXPECT_EQ(Kml::escaped(u"a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d\"e'f");
    EXPECT_EQ(Kml::escaped(u"Jos\u00e9 \u00df"), "Jos&#233; &#223;");
    EXPECT_EQ(Kml::escaped(QString::fromUtf8("73 \xF0\x9F\x98\x80")), "73 &#128512;");
    EXPECT_EQ(Kml::escaped(QString(QChar(0xD800)) + "x"), "?x"); // a lone surrogate
    EXPECT_EQ(Kml::escaped(QString("a") + QChar(1) + "\tb"), "a?\tb");
    QByteArray out;
    Kml::appendLogRecord(out, { u"D&D", u"J<N", u"", u"", u"", u"" });
    EXPECT_TRUE(out.startsWith("<name>D&amp;D</name><Placemark><name>J&lt;N</name>"));
}

TEST(KmlTemplates, FillColoursCarryAlphaInUpperCaseHex)
{
    EXPECT_EQ(Kml::alpha("128"), "80");
    EXPECT_EQ(Kml::alpha("255"), "FF");
    EXPECT_EQ(Kml::alpha("10"), "A");
    EXPECT_EQ(Kml::alpha("0"), "0");
    EXPECT_EQ(Kml::alpha(""), "80");
    EXPECT_EQ(Kml::alpha("x"), "80");
    EXPECT_EQ(Kml::yellowFill("10"), "#A00ffff"); // seven hex digits, written as it is
    EXPECT_EQ(Kml::yellowFill("128"), "#8000ffff");
    EXPECT_EQ(Kml::redFill("255"), "#FF0000ff");
}

TEST(KmlTemplates, LineColourByPropagationCode)
{
    EXPECT_EQ(Kml::lineColourFor(u"Rs", ""), "#ffff0000");
    EXPECT_EQ(Kml::lineColourFor(u"Tr", ""), "#ff0000ff");
    EXPECT_EQ(Kml::lineColourFor(u"Es", ""), "#ff00ff00");
    EXPECT_EQ(Kml::lineColourFor(u"Au", ""), "#ffff0080");
    EXPECT_EQ(Kml::lineColourFor(u"Ms", ""), "#ff707070");
    EXPECT_EQ(Kml::lineColourFor(u"rs", "#keep"), "#keep"); // case-sensitive
    EXPECT_EQ(Kml::lineColourFor(u"", "#keep"), "#keep");
    EXPECT_EQ(Kml::lineColourFor(u"F2", ""), "");
}

TEST(KmlTemplates, SquareRing)
{
    EXPECT_EQ(Kml::squareRing(8, 48, 10, 49),
        "8.0,48.0,2000 10.0,48.0,2000 10.0,49.0,2000 8.0,49.0,2000 8.0,48.0,2000 ");
    EXPECT_EQ(Kml::squareRing(-4, -1, -2, 0),
        "-4.0,-1.0,2000 -2.0,-1.0,2000 -2.0,0.0,2000 -4.0,0.0,2000 -4.0,-1.0,2000 ");
}
