#include "audio/WaveCapture.h"
#include "audio/WaveBuffer.h"
#include "core/ExtensionSettings.h"
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
} // namespace

TEST(WaveCapture, NamedSoundDeviceMissingGivesOneMessage)
{
    TempDir dir;
    ExtensionSettings::setValue(ExtensionKey::AudioDevice, "No Such Card");
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_FALSE(capture.capturing());
    // Every activation tries again; the same failure is not shown again.
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(prompts.shown, QStringList { "The sound input device \"No Such Card\" was not found." });
    WaveBuffer b;
    EXPECT_FALSE(capture.takeBuffer(b));
}

TEST(WaveCapture, NoDefaultSoundDeviceGivesOneMessage)
{
    if (!QMediaDevices::defaultAudioInput().isNull())
        GTEST_SKIP() << "this machine has a sound input";
    TempDir dir;
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::BadDevice);
    EXPECT_EQ(prompts.shown, QStringList { "No sound input device is available." });
}

TEST(WaveCapture, WaveFileDeliversWholeBuffersThenEnds)
{
    TempDir dir;
    const QVector<qint16> tone = WavTestFile::tone(1000, 0.5, 22050, 3 * 8192 + 100);
    WavTestFile::writeMono16(dir.file("t.wav"), tone);
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    capture.setFactory(WaveCapture::waveFile(dir.file("t.wav"), false));
    QSignalSpy ended(&capture, &WaveCapture::ended);
    ASSERT_EQ(capture.StartWaveInput(), WaveStatus::Ok);
    EXPECT_TRUE(capture.capturing());
    WaveBuffer b;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(capture.takeBuffer(b)) << i;
        EXPECT_EQ(b.ReadSample(0), tone[i * 8192] / 32768.0);
        EXPECT_EQ(b.ReadSample(8191), tone[i * 8192 + 8191] / 32768.0);
    }
    EXPECT_FALSE(capture.takeBuffer(b)); // the last 100 samples are no whole buffer
    EXPECT_EQ(ended.count(), 1);
    EXPECT_FALSE(capture.capturing());
    EXPECT_FALSE(capture.takeBuffer(b));
    EXPECT_TRUE(prompts.shown.isEmpty());
    // A new start plays the file again from its beginning.
    ASSERT_EQ(capture.StartWaveInput(), WaveStatus::Ok);
    ASSERT_TRUE(capture.takeBuffer(b));
    EXPECT_EQ(b.ReadSample(1), tone[1] / 32768.0);
}

TEST(WaveCapture, PacedWaveFileKeepsRecordingTime)
{
    TempDir dir;
    WavTestFile::writeMono16(dir.file("t.wav"), WavTestFile::tone(1000, 0.5, 22050, 2 * 8192));
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    capture.setFactory(WaveCapture::waveFile(dir.file("t.wav"), true));
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(capture.StartWaveInput(), WaveStatus::Ok);
    WaveBuffer b;
    EXPECT_FALSE(capture.takeBuffer(b)); // 8192 samples take 371 ms to record
    while (!capture.takeBuffer(b) && clock.elapsed() < 5000)
        QTest::qWait(5);
    EXPECT_GE(clock.elapsed(), 371);
}

TEST(WaveCapture, FailuresAreShownOnceUntilAStartSucceeds)
{
    TempDir dir;
    WavTestFile::writeMono16(dir.file("good.wav"), WavTestFile::tone(1000, 0.5, 22050, 8192));
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    capture.setFactory(WaveCapture::waveFile(dir.file("gone.wav"), false));
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::Error);
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::Error);
    ASSERT_EQ(prompts.shown.size(), 1);
    EXPECT_TRUE(
        prompts.shown[0].startsWith("The wave file " + dir.file("gone.wav") + " could not be opened"));
    EXPECT_EQ(capture.lastError(), prompts.shown[0]);
    capture.setFactory(WaveCapture::waveFile(dir.file("good.wav"), false));
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::Ok);
    capture.StopWaveInput();
    capture.setFactory(WaveCapture::waveFile(dir.file("gone.wav"), false));
    EXPECT_EQ(capture.StartWaveInput(), WaveStatus::Error);
    EXPECT_EQ(prompts.shown.size(), 2);
}

TEST(WaveCapture, DeviceFailingWhileRecordingStopsCaptureWithOneMessage)
{
    RecordingPrompts prompts;
    WaveCapture capture(prompts);
    FailingInput* input = nullptr;
    capture.setFactory([&input] {
        auto i = std::make_unique<FailingInput>();
        input = i.get();
        return i;
    });
    ASSERT_EQ(capture.StartWaveInput(), WaveStatus::Ok);
    ASSERT_TRUE(capture.capturing());
    input->fail("The sound input device stopped delivering sound.");
    EXPECT_FALSE(capture.capturing());
    EXPECT_EQ(input->closed, 1);
    EXPECT_EQ(prompts.shown, QStringList { "The sound input device stopped delivering sound." });
    WaveBuffer b;
    EXPECT_FALSE(capture.takeBuffer(b));
}
