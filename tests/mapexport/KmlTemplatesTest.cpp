#include "mapexport/KmlTemplates.h"

#include <gtest/gtest.h>

TEST(KmlTemplates, SkeletonBytes)
{
    EXPECT_EQ(Kml::outputPath(), "earth.kml");
    EXPECT_EQ(Kml::root(), "<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n");
    EXPECT_EQ(Kml::documentOpen(), "<Document>\r\n");
    EXPECT_EQ(Kml::documentClose(), "</Document></kml>\r\n");
    QByteArray home;
    Kml::appendHomePlacemark(home, u"N0CALL", u"9.58333333333333,48.2916666666667");
    EXPECT_EQ(home,
        "<Placemark><name> N0CALL</name><Point><coordinates>9.58333333333333,48.2916666666667"
        "</coordinates></Point></Placemark>\r\n");
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
    const std::pair<QString, QByteArray> cases[]
        = { { QStringView(u"a&b<c>d\"e'f").toString(), "a&amp;b&lt;c&gt;d\"e'f" },
              { QStringView(u"Jos\u00e9 \u00df").toString(), "Jos&#233; &#223;" },
              { QString::fromUtf8("73 \xF0\x9F\x98\x80"), "73 &#128512;" },
              { QString(QChar(0xD800)) + "x", "?x" }, // a lone surrogate
              { QString("a") + QChar(1) + "\tb", "a?\tb" } };
    for (const auto& [text, escaped] : cases)
        EXPECT_EQ(Kml::escaped(text), escaped) << text.toStdString();
    QByteArray out;
    Kml::appendLogRecord(out, { u"D&D", u"J<N", u"", u"", u"", u"" });
    EXPECT_TRUE(out.startsWith("<name>D&amp;D</name><Placemark><name>J&lt;N</name>"));
}

TEST(KmlTemplates, FillAndLineColours)
{
    // Alpha as two upper-case hexadecimal digits; the fallback is 128.
    const std::pair<const char*, const char*> alphas[]
        = { { "128", "80" }, { "255", "FF" }, { "10", "0A" }, { "15", "0F" }, { "16", "10" }, { "0", "00" },
              { "256", "FF" }, { "99999", "FF" }, { "", "80" }, { "x", "80" }, { "-3", "80" } };
    for (const auto& [transparency, alpha] : alphas)
        EXPECT_EQ(Kml::alpha(transparency), alpha) << transparency;
    EXPECT_EQ(Kml::yellowFill("10"), "#0A00ffff");
    EXPECT_EQ(Kml::redFill("255"), "#FF0000ff");

    const std::pair<const char16_t*, const char*> lines[]
        = { { u"Rs", "#ffff0000" }, { u"Tr", "#ff0000ff" }, { u"Es", "#ff00ff00" }, { u"Au", "#ffff0080" },
              { u"Ms", "#ff707070" }, { u"rs", "#keep" }, // case-sensitive
              { u"", "#keep" } };
    for (const auto& [prop, colour] : lines)
        EXPECT_EQ(Kml::lineColourFor(prop, "#keep"), colour);
    EXPECT_EQ(Kml::lineColourFor(u"F2", ""), "#ffffffff");
    EXPECT_EQ(Kml::lineColourFor(u"", ""), "#ffffffff");
}

TEST(KmlTemplates, SquareRingAcrossZero)
{
    EXPECT_EQ(Kml::squareRing(-4, -1, -2, 0),
        "-4.0,-1.0,2000 -2.0,-1.0,2000 -2.0,0.0,2000 -4.0,0.0,2000 -4.0,-1.0,2000 ");
}
