// NMEA sentences decoded per second: the four parsers over a mixed stream, the whole receive path
// (buffer, cutting, parsing) over a long stream read in serial-sized pieces, and as reference a
// plain decoder doing the same steps with QString::split and toDouble.
#include "core/ReplaceText.h"
#include "gps/GpsReceiver.h"
#include "gps/Nmea.h"

#include <QStringList>
#include <benchmark/benchmark.h>

namespace {

QByteArray sentence(const QByteArray& body)
{
    return '$' + body + '*'
        + QByteArray::number(NmeaChecksum(QString::fromLatin1(body)), 16).rightJustified(2, '0');
}

// One second of a multi-system receiver: RMC, GGA, GSA and three GSV, half of them "$GN"/"$GL".
QList<QByteArray> mixedSecond(int second)
{
    const QByteArray t = QByteArray::number(120000 + second % 60) + ".00";
    const QByteArray talker = second % 2 ? "GN" : "GP";
    return {
        sentence(talker + "RMC," + t + ",A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W"),
        sentence(talker + "GGA," + t + ",4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,"),
        sentence(talker + "GSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1"),
        sentence("GPGSV,3,1,11,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45"),
        sentence("GPGSV,3,2,11,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,"),
        sentence("GLGSV,3,3,11,65,23,040,31,66,55,102,38,72,12,330,"),
    };
}

QStringList mixedSentences(int seconds)
{
    QStringList out;
    for (int s = 0; s < seconds; ++s)
        for (const QByteArray& b : mixedSecond(s))
            out << QString::fromLatin1(b);
    return out;
}

struct Outputs {
    RmcData rmc;
    GgaData gga;
    GsaData gsa;
    GsvData gsv;
};

bool parse(const QString& s, Outputs& o)
{
    switch (s.size() > 5 ? s[5].unicode() : 0) {
    case u'C':
        return ParseRMC(s, o.rmc);
    case u'A':
        return s[4] == u'G' ? ParseGGA(s, o.gga) : ParseGSA(s, o.gsa);
    case u'V':
        return ParseGSV(s, o.gsv);
    }
    return false;
}

// The steps written out the plain way, allocating at every one; decodes the same fields.
bool parsePlain(const QString& sentence, Outputs& o)
{
    const QString s = sentence.trimmed().toUpper();
    const qsizetype star = s.indexOf(u'*', 1);
    if (!s.startsWith(u'$') || star < 0)
        return false;
    if (NmeaChecksum(s.mid(1, star - 1)) != s.mid(star + 1).toInt(nullptr, 16))
        return false;
    const QStringList f = ReplaceText(s.left(star), QStringLiteral(",,"), QStringLiteral(", ,")).split(u',');
    auto num = [&](int k) { return k <= f.size() ? f[k - 1].trimmed().toDouble() : 0.0; };
    auto deg = [&](int k) {
        const QString v = f[k - 1];
        const qsizetype p = v.indexOf(u'.');
        return v.left(p - 2).toDouble() + v.mid(p - 2).toDouble() / 60.0;
    };
    const QString type = s.mid(3, 3);
    if (type == u"RMC") {
        o.rmc.time = f[1].left(2) + u':' + f[1].mid(2, 2) + u':' + f[1].mid(4, 2);
        o.rmc.latitude = deg(4);
        o.rmc.latHemisphere = f[4];
        o.rmc.longitude = deg(6);
        o.rmc.speed = num(8);
        o.rmc.date = f[9].left(2) + u'.' + f[9].mid(2, 2) + u'.' + f[9].mid(4, 2);
    } else if (type == u"GGA") {
        o.gga.latitude = deg(3);
        o.gga.longitude = deg(5);
        o.gga.altitude = num(10);
    } else if (type == u"GSA") {
        for (int i = 1; i <= 12; ++i)
            o.gsa.satellites[i] = static_cast<int>(num(3 + i));
        o.gsa.pdop = num(16);
    } else {
        for (int k = 5; k <= f.size(); ++k)
            o.gsv.prn[(k - 5) / 4 % 12 + 1] = static_cast<int>(num(k));
    }
    return true;
}

void BM_ParsersMixedStream(benchmark::State& state)
{
    const QStringList all = mixedSentences(100);
    Outputs o;
    qsizetype i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parse(all[i], o));
        i = (i + 1) % all.size();
    }
    state.SetItemsProcessed(state.iterations());
    state.SetLabel("sentences");
}
BENCHMARK(BM_ParsersMixedStream);

void BM_PlainReferenceMixedStream(benchmark::State& state)
{
    const QStringList all = mixedSentences(100);
    Outputs o;
    qsizetype i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parsePlain(all[i], o));
        i = (i + 1) % all.size();
    }
    state.SetItemsProcessed(state.iterations());
    state.SetLabel("sentences");
}
BENCHMARK(BM_PlainReferenceMixedStream);

// One hour of receiver output (21 600 sentences, with VTG lines nobody reads in between), fed in
// pieces of 64 bytes as a serial port delivers them.
void BM_ReceiveWindowPathOneHour(benchmark::State& state)
{
    QByteArray stream;
    int sentences = 0;
    for (int s = 0; s < 3600; ++s) {
        for (const QByteArray& b : mixedSecond(s)) {
            stream += b + "\r\n";
            ++sentences;
        }
        stream += sentence("GPVTG,054.7,T,034.4,M,005.5,N,010.2,K") + "\r\n";
    }
    qint64 decoded = 0;
    for (auto _ : state) {
        GpsReceiver r;
        for (qsizetype at = 0; at < stream.size(); at += 64)
            decoded += r.feed(stream.mid(at, 64)).size();
    }
    if (decoded != qint64(state.iterations()) * sentences)
        state.SkipWithError("not every sentence was decoded");
    state.SetItemsProcessed(decoded);
    state.SetBytesProcessed(qint64(state.iterations()) * stream.size());
    state.SetLabel("sentences");
}
BENCHMARK(BM_ReceiveWindowPathOneHour)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
