#include "audio/WavReader.h"
#include "tests/audio/WavTestFile.h"
#include "tests/support/TempDir.h"

#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {
QVector<qint16> readAll(WavReader& r)
{
    QVector<qint16> out(100000);
    out.resize(r.read(out.data(), out.size()));
    return out;
}

QString openError(const TempDir& dir, const QString& name, const QByteArray& bytes)
{
    dir.write(name, bytes);
    WavReader r;
    QString error;
    EXPECT_FALSE(r.open(dir.file(name), error));
    return error;
}
} // namespace

TEST(WavReader, EveryFormatComesOutAsSixteenBitMonoAt22050)
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
        { "44100: every second frame", build(1, 1, 44100, 16, pcm16({ 0, 5, 10, 15, 20, 25, 30, 35 })),
            { 0, 10, 20, 30 } },
        { "11025: midpoints, the last frame has no successor", build(1, 1, 11025, 16, pcm16({ 0, 100, 300 })),
            { 0, 50, 100, 200, 300 } },
        { "8 bits", build(1, 1, 22050, 8, QByteArray("\x80\xC0\x00\xFF", 4)), { 0, 16384, -32768, 32512 } },
        { "24 bits: 0.5, -0.5, just under 1",
            build(1, 1, 22050, 24, QByteArray("\x00\x00\x40\x00\x00\xC0\xFF\xFF\x7F", 9)),
            { 16384, -16384, 32767 } },
        { "float, clipped", build(3, 1, 22050, 32, f32), { 8192, -32768, 32767 } },
        { "a padded odd-sized chunk before fmt",
            build(1, 1, 22050, 16, pcm16({ 7, 8, 9 }), QByteArray("LIST\x03\x00\x00\x00xyz\x00", 12)),
            { 7, 8, 9 } },
        { "streamed: data size 0 reads to the end", build(1, 1, 22050, 16, pcm16({ 7, 8, 9 }), {}, 0),
            { 7, 8, 9 } },
    };
    TempDir dir;
    for (const auto& c : cases) {
        dir.write("x.wav", c.file);
        WavReader r;
        QString error;
        ASSERT_TRUE(r.open(dir.file("x.wav"), error)) << c.what << ": " << error.toStdString();
        EXPECT_EQ(readAll(r), c.expected) << c.what;
    }
}

TEST(WavReader, FileWrittenBySox)
{
    const QString sox = QStandardPaths::findExecutable("sox");
    if (sox.isEmpty())
        GTEST_SKIP() << "sox not installed";
    TempDir dir;
    // 24-bit stereo at 44100 is written in the extensible format with a "fact" chunk.
    ASSERT_EQ(QProcess::execute(sox,
                  { "-n", "-r", "44100", "-c", "2", "-b", "24", dir.file("x.wav"), "synth", "0.5", "sine",
                      "1000", "vol", "0.5" }),
        0);
    WavReader r;
    QString error;
    ASSERT_TRUE(r.open(dir.file("x.wav"), error)) << error.toStdString();
    EXPECT_EQ(r.sampleRate(), 44100);
    EXPECT_EQ(r.channels(), 2);
    const QVector<qint16> got = readAll(r);
    ASSERT_EQ(got.size(), 11025);
    // sox's own reading of the file as text: time, left, right per frame.
    QProcess dat;
    dat.start(sox, { dir.file("x.wav"), "-t", "dat", "-" });
    ASSERT_TRUE(dat.waitForFinished(10000));
    QVector<double> mono;
    for (const QByteArray& line : dat.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> f = line.simplified().split(' ');
        if (f.size() == 3 && !line.startsWith(';'))
            mono.append((f[1].toDouble() + f[2].toDouble()) / 2.0);
    }
    ASSERT_EQ(mono.size(), 22050);
    for (int n = 0; n < got.size(); ++n)
        ASSERT_NEAR(got[n], mono[2 * n] * 32768.0, 0.51) << n;
}

TEST(WavReader, ClearMessagesForFilesItCannotRead)
{
    TempDir dir;
    WavReader r;
    QString error;
    EXPECT_FALSE(r.open(dir.file("missing.wav"), error));
    EXPECT_TRUE(error.startsWith("The wave file " + dir.file("missing.wav") + " could not be opened: "))
        << error.toStdString();
    EXPECT_EQ(openError(dir, "t.wav", "just some text, long enough"),
        "The file " + dir.file("t.wav") + " is not a wave file.");
    QByteArray noData = WavTestFile::build(1, 1, 22050, 16, {});
    noData.truncate(noData.indexOf("data"));
    EXPECT_EQ(openError(dir, "n.wav", noData), "The wave file " + dir.file("n.wav") + " has no sound data.");
    EXPECT_EQ(openError(dir, "adpcm.wav", WavTestFile::build(2, 1, 22050, 4, QByteArray(100, 'x'))),
        "The wave file " + dir.file("adpcm.wav")
            + " is not in a supported format (PCM of 8, 16, 24 or 32 bits, or 32-bit float).");
    EXPECT_EQ(r.read(nullptr, 10), 0);
}
