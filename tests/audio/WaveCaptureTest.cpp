#include "audio/WaveCapture.h"
#include "audio/WaveBuffer.h"
#include "core/Prompts.h"
#include "tests/audio/WavTestFile.h"
#include "tests/support/TempDir.h"

#include <QAudioDevice>
#include <QElapsedTimer>
#include <QMediaDevices>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {
// Stands in for a sound card that opens and then fails while recording.
class FailingInput : public WaveInput {
public:
    int open(QString&) override { return WaveStatus::Ok; }
    void close() override { ++closed; }
    bool takeBuffer(WaveBuffer&) override { return false; }
    void fail(const QString& text) { emit failed(text); }
    int closed = 0;
};

struct Capture {
    TempDir dir;
    RecordingPrompts prompts;
    WaveCapture capture { prompts };
    WaveBuffer b;
    void useFile(const char* name, bool paced = false)
    {
        capture.setFactory(WaveCapture::waveFile(dir.file(name), paced));
    }
};
} // namespace

TEST(WaveCapture, NoDefaultSoundDeviceGivesOneMessage)
{
    if (!QMediaDevices::defaultAudioInput().isNull())
        GTEST_SKIP() << "this machine has a sound input";
    Capture c;
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(c.prompts.shown, QStringList { "No sound input device is available." });
    EXPECT_FALSE(c.capture.takeBuffer(c.b));
}

TEST(WaveCapture, WaveFileDeliversWholeBuffersThenEnds)
{
    Capture c;
    const QVector<qint16> tone = WavTestFile::tone(1000, 0.5, 3 * 8192 + 100);
    WavTestFile::writeMono16(c.dir.file("t.wav"), tone);
    c.useFile("t.wav");
    QSignalSpy ended(&c.capture, &WaveCapture::ended);
    ASSERT_EQ(c.capture.StartWaveInput(), WaveStatus::Ok);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(c.capture.takeBuffer(c.b)) << i;
        EXPECT_EQ(c.b.ReadSample(0), tone[i * 8192] / 32768.0);
        EXPECT_EQ(c.b.ReadSample(8191), tone[i * 8192 + 8191] / 32768.0);
    }
    EXPECT_FALSE(c.capture.takeBuffer(c.b)); // the last 100 samples are no whole buffer
    EXPECT_EQ(ended.count(), 1);
    EXPECT_FALSE(c.capture.capturing());
    EXPECT_TRUE(c.prompts.shown.isEmpty());
    // A new start plays the file again from its beginning.
    ASSERT_EQ(c.capture.StartWaveInput(), WaveStatus::Ok);
    ASSERT_TRUE(c.capture.takeBuffer(c.b));
    EXPECT_EQ(c.b.ReadSample(1), tone[1] / 32768.0);
}

TEST(WaveCapture, PacedWaveFileKeepsRecordingTime)
{
    Capture c;
    WavTestFile::writeMono16(c.dir.file("t.wav"), WavTestFile::tone(1000, 0.5, 2 * 8192));
    c.useFile("t.wav", true);
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(c.capture.StartWaveInput(), WaveStatus::Ok);
    EXPECT_FALSE(c.capture.takeBuffer(c.b)); // 8192 samples take 371 ms to record
    EXPECT_TRUE(QTest::qWaitFor([&] { return c.capture.takeBuffer(c.b); }, 5000));
    EXPECT_GE(clock.elapsed(), 371);
}

TEST(WaveCapture, FailuresAreShownOnceUntilAStartSucceeds)
{
    Capture c;
    WavTestFile::writeMono16(c.dir.file("good.wav"), WavTestFile::tone(1000, 0.5, 8192));
    c.useFile("gone.wav");
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::Error);
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::Error);
    ASSERT_EQ(c.prompts.shown.size(), 1);
    EXPECT_TRUE(
        c.prompts.shown[0].startsWith("The recording " + c.dir.file("gone.wav") + " could not be opened"));
    c.useFile("good.wav");
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::Ok);
    c.capture.StopWaveInput();
    c.useFile("gone.wav");
    EXPECT_EQ(c.capture.StartWaveInput(), WaveStatus::Error);
    EXPECT_EQ(c.prompts.shown.size(), 2);
}

TEST(WaveCapture, DeviceFailingWhileRecordingStopsCaptureWithOneMessage)
{
    Capture c;
    FailingInput* input = nullptr;
    c.capture.setFactory([&input] {
        auto i = std::make_unique<FailingInput>();
        input = i.get();
        return i;
    });
    ASSERT_EQ(c.capture.StartWaveInput(), WaveStatus::Ok);
    input->fail("The sound input device stopped delivering sound.");
    EXPECT_FALSE(c.capture.capturing());
    EXPECT_EQ(input->closed, 1);
    EXPECT_EQ(c.prompts.shown, QStringList { "The sound input device stopped delivering sound." });
    EXPECT_FALSE(c.capture.takeBuffer(c.b));
}
