#include "gps/NmeaReceiveBuffer.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

namespace {
const QByteArray kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";
const QByteArray kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
const QByteArray kGsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75";
const QByteArray kGsv2 = "$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A";

// Talker and type of each sentence cut, then what is left: "GP RMC | GN GGA | ... || pending".
QString cut(NmeaReceiveBuffer& b, const QByteArray& bytes)
{
    static const char* types[] = { "RMC", "GGA", "GSA", "GSV" };
    QStringList out;
    for (const auto& s : b.feed(bytes)) {
        // From "$" to the checksum, nothing around it.
        EXPECT_TRUE(s.text.startsWith('$' + s.talker + types[int(s.type)])
            && s.text.indexOf('*') == s.text.size() - 3)
            << s.text.toStdString();
        out << s.talker + ' ' + types[int(s.type)];
    }
    return out.join(" | ") + " || " + QString::fromLatin1(b.pending());
}
} // namespace

TEST(NmeaReceiveBuffer, CutsEverySentenceInArrivalOrderFromAnyTalker)
{
    const std::pair<QByteArray, QString> cases[] = {
        { kRmc + "\r\n" + kGga + "\r\n$GPGSA,A,1*00\r\n" + kGsv + "\r\n$GPRMC,1234",
            "GP RMC | GP GGA | GP GSA | GP GSV || $GPRMC,1234" },
        // A receiver that sends its fix before the RMC (MediaTek, SiRF): nothing is thrown away.
        { kGga + "\r\n$GPGSA,A,1*00\r\n" + kGsv + "\r\n" + kRmc + "\r\n",
            "GP GGA | GP GSA | GP GSV | GP RMC || " },
        { kGsv + "\r\n" + kGsv2 + "\r\n", "GP GSV | GP GSV || " },
        // Lines ending in LF alone.
        { kGga + "\n" + kRmc + "\n", "GP GGA | GP RMC || " },
        // A sentence cut short and run into the next: the line's last "$" starts the sentence.
        { kGga.left(30) + kRmc + "\r\n", "GP RMC || " },
        { "$GNRMC,x*00\r\n$BDGGA,w*00\r\n$GAGSA,z*00\r\n$GLGSV,y*00\r\n$GBGSV,v*00\r\n$QZRMC,u*00\r\n$GPVTG,"
          "t*00\r\n",
            "GN RMC | BD GGA | GA GSA | GL GSV | GB GSV || " },
    };
    for (const auto& [bytes, expected] : cases) {
        NmeaReceiveBuffer b;
        EXPECT_EQ(cut(b, bytes), expected) << bytes.constData();
    }
}

TEST(NmeaReceiveBuffer, ASentenceCutByTheReadIsTakenWhenItsEndArrives)
{
    NmeaReceiveBuffer b;
    EXPECT_EQ(cut(b, kGga.left(20)), " || " + QString::fromLatin1(kGga.left(20)));
    EXPECT_EQ(cut(b, kGga.mid(20) + "\r"), " || " + QString::fromLatin1(kGga + "\r"));
    EXPECT_EQ(cut(b, "\n"), "GP GGA || ");
}

TEST(NmeaReceiveBuffer, StaysBoundedWhateverArrives)
{
    NmeaReceiveBuffer b;
    for (int i = 0; i < 1000; ++i) { // garbage without line ends, then lines nobody reads
        b.feed(i < 500 ? QByteArray(97, 'x')
                       : "$GPGLL,4916.45,N,12311.12,W,225444,A*31\r\n$GPVTG,054.7,T*48\r\n");
        ASSERT_LE(b.pending().size(), NmeaReceiveBuffer::kMaxPending);
    }
    b.feed("$GPRMC," + QByteArray(5000, '1')); // a known type that never ends
    EXPECT_LE(b.pending().size(), NmeaReceiveBuffer::kMaxPending);
    EXPECT_EQ(cut(b, "\r\n" + kRmc + "\r\n"), "GP RMC || ");
    // A partial sentence after a long run of garbage survives the trimming.
    EXPECT_EQ(cut(b, QByteArray(3000, 'x') + "\r\n$GPVTG,1*00\r\n" + kRmc.left(30)),
        " || " + QString::fromLatin1(kRmc.left(30)));
    EXPECT_EQ(cut(b, kRmc.mid(30) + "\r\n"), "GP RMC || ");
}
