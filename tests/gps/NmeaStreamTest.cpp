// Receiver streams replayed through the receive path, each against its golden file: one line per
// decoded sentence with the texts the window shows, and the fix display whenever it changes.
// KESTREL_UPDATE_GOLDEN=1 rewrites the golden files from what the code does now.
#include "gps/GpsDisplay.h"
#include "gps/GpsReceiver.h"
#include "tests/gps/PrintQString.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

namespace {

using namespace GpsDisplay;

QString describe(const GpsReceiver& r, const GpsReceiver::Decoded& d)
{
    const QString head = d.talker + u' ';
    switch (d.type) {
    case NmeaReceiveBuffer::Type::RMC: {
        const RmcData& m = r.rmc();
        return head
            + QStringLiteral("RMC %1 %2 %3 %4 %5 %6 speed=%7 course=%8 date=%9 var=%10")
                  .arg(m.time, validityText(m.valid), numberText(m.latitude), m.latHemisphere,
                      numberText(m.longitude), m.lonHemisphere, numberText(m.speed), numberText(m.course),
                      m.date)
                  .arg(numberText(m.magneticVariation));
    }
    case NmeaReceiveBuffer::Type::GGA: {
        const GgaData& g = r.gga();
        return head
            + QStringLiteral("GGA %1 %2 %3 %4 %5 %6 sats=%7 hdop=%8 alt=%9")
                  .arg(g.time, numberText(g.latitude), g.latHemisphere, numberText(g.longitude),
                      g.lonHemisphere, g.quality, QString::number(g.satellites), numberText(g.hdop),
                      numberText(g.altitude))
            + QStringLiteral(" %1 sep=%2 %3")
                  .arg(unitText(g.altitudeUnit), numberText(g.separation), unitText(g.separationUnit));
    }
    case NmeaReceiveBuffer::Type::GSA: {
        const GsaData& a = r.gsa();
        QStringList used;
        for (int i = 1; i <= 12; ++i)
            used << entryText(a.satellites[i]);
        return head
            + QStringLiteral("GSA %1 %2 used=%3 dop=%4/%5/%6")
                  .arg(selectionText(a.automatic), a.fix, used.join(u','), numberText(a.pdop),
                      numberText(a.hdop), numberText(a.vdop));
    }
    case NmeaReceiveBuffer::Type::GSV:
        return head
            + QStringLiteral("GSV %1/%2 in view %3 %4")
                  .arg(d.gsv.messageNumber)
                  .arg(d.gsv.messageCount)
                  .arg(d.gsv.satellitesInView)
                  .arg(gsvGroups(d.gsv));
    }
    return {};
}

QString replay(const QByteArray& file)
{
    QByteArray stream;
    for (const QByteArray& line : file.split('\n'))
        if (!line.isEmpty() && !line.startsWith('#'))
            stream += line + "\r\n";
    GpsReceiver r;
    QStringList out;
    QString grid;
    for (qsizetype at = 0; at < stream.size(); at += 64) { // as a serial port hands it over
        for (const GpsReceiver::Decoded& d : r.feed(stream.mid(at, 64)))
            out << describe(r, d);
        const QString now = gridText(r.fix(), r.position());
        if (now != grid)
            out << QStringLiteral("grid: ") + now;
        grid = now;
    }
    out << QStringLiteral("pending: %1 bytes").arg(r.buffer().pending().size());
    return out.join(u'\n') + u'\n';
}

} // namespace

TEST(NmeaStream, EachReceiverStreamDecodesAsItsGoldenFileSays)
{
    const QDir dir(QStringLiteral(KESTREL_GPS_STREAMS));
    for (const QString name : { "cold-start-gp", "multi-gnss-gn", "noisy-line" }) {
        QFile in(dir.filePath(name + ".nmea"));
        ASSERT_TRUE(in.open(QIODevice::ReadOnly)) << in.fileName().toStdString();
        const QString got = replay(in.readAll());
        QFile golden(dir.filePath(name + ".golden"));
        if (qEnvironmentVariableIntValue("KESTREL_UPDATE_GOLDEN")) {
            ASSERT_TRUE(golden.open(QIODevice::WriteOnly | QIODevice::Truncate));
            golden.write(got.toUtf8());
            continue;
        }
        ASSERT_TRUE(golden.open(QIODevice::ReadOnly)) << golden.fileName().toStdString();
        EXPECT_EQ(got, QString::fromUtf8(golden.readAll())) << name.toStdString();
    }
}
