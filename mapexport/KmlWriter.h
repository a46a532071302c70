#pragma once
// The writing sequence of a map document, shared by the log and the beacon export: root,
// document, home placemark, one placemark (and optional line) per record, closing tags.
// Decides the fill colours and keeps the line colour in the Station from record to record
// and from export to export.
#include <QString>

class KmlFile;
class Station;

// One log record as the writer reads it; a Null column arrives as an empty text.
struct LogKmlRow {
    QString grid;
    QString geData;
    QString gridXY;
    QString poly;
    QString qsl;
    QString prop;
};

class KmlWriter {
public:
    KmlWriter(Station& station, KmlFile& file);

    // Root, "<Document>" and the home placemark. Reads the transparency once, so a slider
    // change takes effect at the next export.
    void begin();
    void logRecord(const LogKmlRow& row, bool lines);
    // `name` is already shortened by the beacon export.
    void beaconRecord(const QString& name, const QString& geData, const QString& gridXY, bool lines);
    void end();

private:
    Station& station_;
    KmlFile& file_;
    QString yellow_;
    QString red_;
};
