#include "audio/RecordingReader.h"
#include "tests/audio/WavTestFile.h"
#include "tests/support/TempDir.h"

#include <QProcess>
#include <QStandardPaths>
#include <cmath>
#include <gtest/gtest.h>

namespace {
QVector<qint16> readAll(RecordingReader& r)
{
    QVector<qint16> out(1000000);
    out.resize(r.read(out.data(), out.size()));
    return out;
}

QVector<qint16> readFile(const QString& path)
{
    RecordingReader r;
    QString error;
    EXPECT_TRUE(r.open(path, error)) << error.toStdString();
    return readAll(r);
}

QString openError(const TempDir& dir, const QString& name, const QByteArray& bytes)
{
    dir.write(name, bytes);
    RecordingReader r;
    QString error;
    EXPECT_FALSE(r.open(dir.file(name), error));
    return error;
}

// Root mean square of the samples from `from` on, as a part of full scale.
double rms(const QVector<qint16>& s, int from = 0)
{
    double sum = 0.0;
    for (int n = from; n < s.size(); ++n)
        sum += double(s[n]) * s[n];
    return std::sqrt(sum / std::max<qsizetype>(1, s.size() - from)) / 32768.0;
}

QString sox()
{
    return QStandardPaths::findExecutable("sox");
}
} // namespace

TEST(RecordingReader, EveryWaveFormatAt22050ComesOutAsSixteenBitMono)
{
    using namespace WavTestFile;
    using S = QVector<qint16>;
    QByteArray f32;
    for (float f : { 0.25f, -1.0f, 2.0f })
        put(f32, f);
    const struct {
        const char* what;
        QByteArray file;
        S expected;
    } cases[] = {
        { "16-bit mono at 22050: unchanged", build(1, 1, 22050, 16, pcm16({ 0, -1, 32767, -32768, 1234 })),
            { 0, -1, 32767, -32768, 1234 } },
        { "stereo: the mean of left and right",
            build(1, 2, 22050, 16, pcm16({ 100, 300, -1000, 1000, 32767, 32767 })), { 200, 0, 32767 } },
        { "8 bits", build(1, 1, 22050, 8, QByteArray("\x80\xC0\x00\xFF", 4)), { 0, 16384, -32768, 32512 } },
        { "24 bits: 0.5, -0.5, just under 1",
            build(1, 1, 22050, 24, QByteArray("\x00\x00\x40\x00\x00\xC0\xFF\xFF\x7F", 9)),
            { 16384, -16384, 32767 } },
        { "float, clipped", build(3, 1, 22050, 32, f32), { 8192, -32768, 32767 } },
        { "a padded odd-sized chunk before fmt",
            build(1, 1, 22050, 16, pcm16({ 7, 8, 9 }), QByteArray("LIST\x03\x00\x00\x00xyz\x00", 12)),
            { 7, 8, 9 } },
    };
    TempDir dir;
    for (const auto& c : cases) {
        dir.write("x.wav", c.file);
        EXPECT_EQ(readFile(dir.file("x.wav")), c.expected) << c.what;
    }
}

// The rate conversion filters: a tone above 11025 Hz vanishes, a tone below keeps its level and
// the recording its length.
TEST(RecordingReader, OtherRatesAreConvertedWithAnAntiAliasFilter)
{
    TempDir dir;
    for (const int rate : { 44100, 48000, 11025 }) {
        const int count = rate * 2; // two seconds
        SCOPED_TRACE(rate);
        const QVector<qint16> low = readFile(
            WavTestFile::writeMono16(dir.file("low.wav"), WavTestFile::tone(1000, 0.5, count, rate), rate));
        EXPECT_NEAR(low.size(), 44100, 1);
        // 0.5 / sqrt(2) in the middle, away from the filter's run-in at both ends.
        EXPECT_NEAR(rms(low.mid(2000, 40000)), 0.5 / std::sqrt(2.0), 0.002);
        if (rate < 22050)
            continue;
        const QVector<qint16> high = readFile(
            WavTestFile::writeMono16(dir.file("high.wav"), WavTestFile::tone(15000, 0.5, count, rate), rate));
        EXPECT_NEAR(high.size(), 44100, 1);
        // Away from the clicks of its abrupt start and end, more than 80 dB down (the old reader
        // folded it to a tone at 7050 Hz, 6 dB down).
        EXPECT_LT(rms(high.mid(2000, 40000)), 3e-5);
    }
}

TEST(RecordingReader, FlacAndSoxFilesAreRead)
{
    if (sox().isEmpty())
        GTEST_SKIP() << "sox not installed";
    TempDir dir;
    // A lossless FLAC at 22050 must come out sample for sample as sox reads it back.
    ASSERT_EQ(QProcess::execute(sox(),
                  { "-n", "-r", "22050", "-c", "1", "-b", "16", dir.file("x.flac"), "synth", "0.5", "sine",
                      "1000", "vol", "0.5" }),
        0);
    const QVector<qint16> flac = readFile(dir.file("x.flac"));
    ASSERT_EQ(flac.size(), 11025);
    QProcess dat;
    dat.start(sox(), { dir.file("x.flac"), "-t", "dat", "-" });
    ASSERT_TRUE(dat.waitForFinished(10000));
    QVector<double> expected;
    for (const QByteArray& line : dat.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> f = line.simplified().split(' ');
        if (f.size() == 2 && !line.startsWith(';'))
            expected.append(f[1].toDouble());
    }
    ASSERT_EQ(expected.size(), flac.size());
    for (int n = 0; n < flac.size(); ++n)
        ASSERT_NEAR(flac[n], expected[n] * 32768.0, 0.51) << n;

    // 24-bit stereo at 44100 is written in the extensible format with a "fact" chunk.
    ASSERT_EQ(QProcess::execute(sox(),
                  { "-n", "-r", "44100", "-c", "2", "-b", "24", dir.file("x.wav"), "synth", "0.5", "sine",
                      "1000", "vol", "0.5" }),
        0);
    RecordingReader r;
    QString error;
    ASSERT_TRUE(r.open(dir.file("x.wav"), error)) << error.toStdString();
    EXPECT_EQ(r.sampleRate(), 44100);
    EXPECT_EQ(r.channels(), 2);
    const QVector<qint16> wav = readAll(r);
    EXPECT_NEAR(wav.size(), 11025, 1);
    EXPECT_NEAR(rms(wav.mid(1000, 9000)), 0.5 / std::sqrt(2.0), 0.002);
}

TEST(RecordingReader, ClearMessagesForFilesItCannotRead)
{
    TempDir dir;
    RecordingReader r;
    QString error;
    EXPECT_FALSE(r.open(dir.file("missing.wav"), error));
    EXPECT_TRUE(error.startsWith("The recording " + dir.file("missing.wav") + " could not be opened: "))
        << error.toStdString();
    EXPECT_TRUE(openError(dir, "t.wav", "just some text, long enough")
                    .startsWith("The file " + dir.file("t.wav") + " is not a recording Kestrel can read ("));
    QByteArray noData = WavTestFile::build(1, 1, 22050, 16, {});
    EXPECT_EQ(openError(dir, "n.wav", noData), "The recording " + dir.file("n.wav") + " has no sound data.");
    EXPECT_EQ(r.read(nullptr, 10), 0);
}
