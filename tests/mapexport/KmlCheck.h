#pragma once
// Test helpers: xmllint's verdict on a written file, and what a KML reader finds in it.
#include <QByteArray>
#include <QString>
#include <gtest/gtest.h>

// Runs "xmllint --noout" on the file; empty when it is well-formed, else xmllint's complaint.
QString XmlLintErrors(const QString& path);

struct KmlShape {
    int points = 0; // <Point> with coordinates
    int polygons = 0; // <Polygon> whose ring holds coordinates
    int emptyPolygons = 0; // <Polygon> without a ring or with an empty one
    int lines = 0; // <LineString>
    int placemarks = 0;
    bool ok = false; // the reader got to the end without an error
};
KmlShape ReadKml(const QByteArray& bytes);

// Compares with tests/mapexport/golden/<name>; KESTREL_UPDATE_GOLDEN=1 rewrites the golden.
::testing::AssertionResult MatchesGolden(const QString& name, const QByteArray& bytes);
