#include "gps/NmeaReceiveBuffer.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

namespace {
const QByteArray kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";
const QByteArray kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
const QByteArray kGsa = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39";
const QByteArray kGsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75";
const QByteArray kEnd = "\r\n";

QStringList textsOf(const QList<NmeaReceiveBuffer::Sentence>& list)
{
    QStringList out;
    for (const auto& s : list)
        out << s.text;
    return out;
}
} // namespace

TEST(NmeaReceiveBuffer, CutsEachTypeInOrderAndKeepsTheRest)
{
    NmeaReceiveBuffer b;
    const auto got = b.feed(kRmc + kEnd + kGga + kEnd + kGsa + kEnd + kGsv + kEnd + "$GPRMC,1234");
    ASSERT_EQ(got.size(), 4);
    EXPECT_EQ(got[0].type, NmeaReceiveBuffer::Type::RMC);
    EXPECT_EQ(got[0].talker, "GP");
    EXPECT_EQ(got[0].text, QString::fromLatin1(kRmc));
    EXPECT_EQ(got[3].type, NmeaReceiveBuffer::Type::GSV);
    EXPECT_EQ(b.pending(), "$GPRMC,1234");
}

TEST(NmeaReceiveBuffer, ASentenceCutByTheReadIsTakenWhenItsEndArrives)
{
    NmeaReceiveBuffer b;
    EXPECT_TRUE(b.feed(kGga.left(20)).isEmpty());
    EXPECT_TRUE(b.feed(kGga.mid(20) + "\r").isEmpty());
    EXPECT_EQ(textsOf(b.feed("\n")), QStringList { QString::fromLatin1(kGga) });
    EXPECT_TRUE(b.pending().isEmpty());
}

TEST(NmeaReceiveBuffer, EverythingBeforeACutSentenceGoesWithIt)
{
    // The types are looked for in their order, so a GGA standing before an RMC in one read is
    // cut away together with the RMC.
    NmeaReceiveBuffer b;
    const auto got = b.feed(kGga + kEnd + kRmc + kEnd);
    EXPECT_EQ(textsOf(got), QStringList { QString::fromLatin1(kRmc) });
    EXPECT_TRUE(b.pending().isEmpty());
}

TEST(NmeaReceiveBuffer, SeveralOfOneTypeAreAllTaken)
{
    NmeaReceiveBuffer b;
    const QByteArray gsv2 = "$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A";
    EXPECT_EQ(textsOf(b.feed(kGsv + kEnd + gsv2 + kEnd)),
        (QStringList { QString::fromLatin1(kGsv), QString::fromLatin1(gsv2) }));
}

TEST(NmeaReceiveBuffer, OtherTalkersAreTakenLikeGps)
{
    NmeaReceiveBuffer b;
    const auto got = b.feed("$GNRMC,x*00\r\n$BDGGA,w*00\r\n$GAGSA,z*00\r\n$GLGSV,y*00\r\n$GBGSV,v*00\r\n"
                            "$QZRMC,u*00\r\n$GPVTG,t*00\r\n");
    ASSERT_EQ(got.size(), 5);
    const char* talkers[] = { "GN", "BD", "GA", "GL", "GB" };
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(got[i].talker, talkers[i]) << i;
    EXPECT_EQ(got[4].type, NmeaReceiveBuffer::Type::GSV);
    EXPECT_TRUE(b.pending().isEmpty());
}

TEST(NmeaReceiveBuffer, StaysBoundedWhateverArrives)
{
    NmeaReceiveBuffer b;
    // Garbage without line ends.
    for (int i = 0; i < 1000; ++i) {
        b.feed(QByteArray(97, 'x'));
        ASSERT_LE(b.pending().size(), NmeaReceiveBuffer::kMaxPending);
    }
    // Lines of types nobody reads.
    for (int i = 0; i < 1000; ++i) {
        b.feed("$GPGLL,4916.45,N,12311.12,W,225444,A*31\r\n$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K*48\r\n");
        ASSERT_LE(b.pending().size(), NmeaReceiveBuffer::kMaxPending);
    }
    // A known type that never ends.
    b.feed("$GPRMC," + QByteArray(5000, '1'));
    EXPECT_LE(b.pending().size(), NmeaReceiveBuffer::kMaxPending);
    // And afterwards good sentences still come through.
    EXPECT_EQ(textsOf(b.feed("\r\n" + kRmc + kEnd)), QStringList { QString::fromLatin1(kRmc) });
}

TEST(NmeaReceiveBuffer, APartialSentenceSurvivesTheTrimming)
{
    NmeaReceiveBuffer b;
    b.feed(QByteArray(3000, 'x') + "\r\n$GPVTG,1*00\r\n" + kRmc.left(30));
    EXPECT_EQ(b.pending(), kRmc.left(30));
    EXPECT_EQ(textsOf(b.feed(kRmc.mid(30) + kEnd)), QStringList { QString::fromLatin1(kRmc) });
}
