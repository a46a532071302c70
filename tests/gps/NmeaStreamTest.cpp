// Receiver streams replayed through the receive path, one test per stream file, each against
// its golden file: one line per decoded sentence with the texts the window shows, then the
// fix, the used satellites of every system and what is left in the buffer. The same stream
// in one read, in 64-byte pieces and byte by byte must give the same result.
// KESTREL_UPDATE_GOLDEN=1 rewrites the golden files from what the code does now.
#include "gps/GpsDisplay.h"
#include "gps/GpsReceiver.h"
#include "gps/Nmea.h"
#include "tests/gps/NmeaStreams.h"
#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

namespace {

using namespace GpsDisplay;

// Each sentence described from its own text, so that the description does not depend on
// which later sentences arrived in the same read.
QString describe(const GpsReceiver::Decoded& d)
{
    const QString head = d.talker + u' ';
    switch (d.type) {
    case NmeaReceiveBuffer::Type::RMC: {
        RmcData m;
        ParseRMC(d.sentence, m);
        return head
            + QStringLiteral("RMC %1 %2 %3 %4 %5 %6 speed=%7 course=%8 date=%9 var=%10")
                  .arg(m.time, validityText(m.valid), numberText(m.latitude), m.latHemisphere,
                      numberText(m.longitude), m.lonHemisphere, numberText(m.speed), numberText(m.course),
                      m.date)
                  .arg(numberText(m.magneticVariation));
    }
    case NmeaReceiveBuffer::Type::GGA: {
        GgaData g;
        ParseGGA(d.sentence, g);
        return head
            + QStringLiteral("GGA %1 %2 %3 %4 %5 %6 sats=%7 hdop=%8 alt=%9")
                  .arg(g.time, numberText(g.latitude), g.latHemisphere, numberText(g.longitude),
                      g.lonHemisphere, g.quality, QString::number(g.satellites), numberText(g.hdop),
                      numberText(g.altitude))
            + QStringLiteral(" %1 sep=%2 %3")
                  .arg(unitText(g.altitudeUnit), numberText(g.separation), unitText(g.separationUnit));
    }
    case NmeaReceiveBuffer::Type::GSA: {
        GsaData a;
        ParseGSA(d.sentence, a);
        QStringList used;
        for (int i = 1; i <= 12; ++i)
            used << entryText(a.satellites[i]);
        return head
            + QStringLiteral("GSA %1 %2 %3 used=%4 dop=%5/%6/%7")
                  .arg(GpsReceiver::systemName(d.system), selectionText(a.automatic), a.fix, used.join(u','),
                      numberText(a.pdop), numberText(a.hdop), numberText(a.vdop));
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

QString replay(const QByteArray& stream, qsizetype piece)
{
    GpsReceiver r;
    r.setClock([] { return qint64(0); }); // a replay takes no time: nothing goes stale
    QStringList out;
    for (qsizetype at = 0; at < stream.size(); at += piece) {
        for (const GpsReceiver::Decoded& d :
            r.feed(QByteArrayView(stream).sliced(at, std::min(piece, stream.size() - at))))
            out << describe(d);
    }
    out << QStringLiteral("grid: ") + gridText(r.fix(), r.position());
    out << QStringLiteral("used: ") + usedText(r).replace(u'\n', QStringLiteral(" | "));
    out << QStringLiteral("pending: %1 bytes").arg(r.buffer().pending().size());
    return out.join(u'\n') + u'\n';
}

class NmeaStream : public ::testing::TestWithParam<QString> { };

} // namespace

TEST_P(NmeaStream, DecodesAsItsGoldenFileSaysInAnyPieces)
{
    const NmeaStreams::Stream stream = NmeaStreams::load(GetParam());
    ASSERT_FALSE(stream.bytes.isEmpty());
    EXPECT_TRUE(stream.header.startsWith(QStringLiteral("# Order: ")))
        << "the header names the receiver order";
    const QString got = replay(stream.bytes, stream.bytes.size());
    EXPECT_EQ(replay(stream.bytes, 64), got);
    EXPECT_EQ(replay(stream.bytes, 1), got);

    QFile golden(NmeaStreams::folder().filePath(GetParam() + QStringLiteral(".golden")));
    if (qEnvironmentVariableIntValue("KESTREL_UPDATE_GOLDEN")) {
        ASSERT_TRUE(golden.open(QIODevice::WriteOnly | QIODevice::Truncate));
        golden.write(got.toUtf8());
        return;
    }
    ASSERT_TRUE(golden.open(QIODevice::ReadOnly)) << golden.fileName().toStdString();
    EXPECT_EQ(got, QString::fromUtf8(golden.readAll()));
}

INSTANTIATE_TEST_SUITE_P(
    Streams, NmeaStream, ::testing::ValuesIn(NmeaStreams::names()), NmeaStreams::testName);
