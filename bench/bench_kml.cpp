// The map export on a large log: the KML writer's own throughput, and SQNr plus the whole
// GoogleEarth export over 100 000 contacts on 2 000 squares in a real SQLite file.
#include "core/Station.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "mapexport/KmlWriter.h"
#include "tests/support/TempDir.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QList>

#include <cstdio>

namespace {

constexpr int kContacts = 100000;
constexpr int kSquares = 2000;

// The i-th of kSquares squares spread over Europe and beyond: fields I..P, J..O.
QString squareOf(int i)
{
    const int field = i / 100, square = i % 100;
    return QString(QChar(u'I' + field % 8)) + QChar(u'J' + field / 8) + QChar(u'0' + square / 10)
        + QChar(u'0' + square % 10);
}

QList<LogKmlRow> makeRows()
{
    static const char* props[] = { "Tr", "Rs", "Es", "Au", "Ms", "" };
    QList<LogKmlRow> rows;
    rows.reserve(kContacts);
    for (int i = 0; i < kContacts; ++i) {
        const QString sq = squareOf(i % kSquares);
        LogKmlRow r;
        r.grid = sq + "MM";
        r.geData = QStringLiteral(
            "Log: DL%1ABC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y "
            "Prop:Tr tnx & 73")
                       .arg(i % 10);
        r.gridXY = QStringLiteral("9.58333333333333,48.2916666666667");
        r.poly = i < kSquares ? Kml::squareRing(8, 48, 10, 49) : QString();
        r.qsl = i % 3 ? "Q" : "D";
        r.prop = props[i % 6];
        rows << r;
    }
    return rows;
}

void benchWriter()
{
    TempDir dir;
    RecordingPrompts prompts;
    Station station(prompts);
    station.settings.setText(Setting::MyCall, "N0CALL");
    station.homeCoords = "9.16666666666667,48.9166666666667";
    station.transparency = "128";
    station.documentName = "N0CALL 144 MHz wkd/cfd 2000/1500";
    const QList<LogKmlRow> rows = makeRows();
    for (bool lines : { false, true }) {
        double best = 1e9;
        qint64 bytes = 0;
        for (int rep = 0; rep < 5; ++rep) {
            QElapsedTimer t;
            t.start();
            KmlFile file(Kml::outputPath());
            file.open();
            KmlWriter w(station, file);
            w.begin();
            for (const LogKmlRow& r : rows)
                w.logRecord(r, lines);
            w.end();
            bytes = file.bytesWritten();
            file.commit();
            best = std::min(best, t.nsecsElapsed() / 1e9);
        }
        std::printf("writer, %d records, lines %-3s: %7.1f ms, %6.1f MB, %7.1f MB/s\n", kContacts,
            lines ? "on" : "off", best * 1e3, bytes / 1e6, bytes / 1e6 / best);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchWriter();
    return 0;
}
