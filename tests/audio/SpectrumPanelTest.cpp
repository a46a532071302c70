#include "ui/spectrum/SpectrumPanel.h"
#include "audio/SpectrumPicture.h"
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "tests/audio/WavTestFile.h"
#include "tests/support/TempDir.h"
#include "ui/spectrum/SpectrumView.h"

#include <QCheckBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {
struct Host {
    explicit Host(const char* soundDevice = nullptr)
        : station(prompts)
    {
        if (soundDevice)
            ExtensionSettings::setValue(ExtensionKey::AudioDevice, soundDevice);
        window.resize(640, 520);
        panel = new SpectrumPanel(station, &window);
        window.setCentralWidget(panel);
        window.show();
    }
    QString text(const char* name) const { return panel->findChild<QLabel*>(name)->text(); }
    QImage image() const { return panel->findChild<SpectrumView*>("Picture2")->picture().image(); }
    // Plays a file unpaced through the panel's Timer1 and waits for its end.
    bool play(const char* name, const QVector<qint16>& samples)
    {
        QSignalSpy ended(&panel->capture(), &WaveCapture::ended);
        return panel->openWaveFile(WavTestFile::writeMono16(dir.file(name), samples), false)
            && ended.wait(20000);
    }
    bool playFile(const QString& path)
    {
        QSignalSpy ended(&panel->capture(), &WaveCapture::ended);
        return panel->openWaveFile(path, false) && ended.wait(20000);
    }
    // Ten seconds of `frequency` at half scale: 26 whole buffers once at 22050 samples/s.
    bool playTone(double frequency = 1000, int rate = 22050)
    {
        return playFile(WavTestFile::writeMono16(dir.file(QStringLiteral("tone%1.wav").arg(rate)),
            WavTestFile::tone(frequency, 0.5, rate * 10, rate), rate));
    }
    QStringList texts() const
    {
        return { text("lblFreq"), text("lblMax"), text("lblMaxHold"), text("Label23") };
    }

    TempDir dir;
    RecordingPrompts prompts;
    Station station;
    QMainWindow window;
    SpectrumPanel* panel;
};

// Highest trace pixel in the picture: its column (in bins) and row (in plot units).
QPointF topOfTrace(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == SpectrumPicture::TraceColour)
                return { x * 1200.0 / image.width() - 100.0, y * 1200.0 / image.height() - 100.0 };
    return { -1000, -1000 };
}

int number(const QString& caption)
{
    return caption.section(' ', 0, 0).toInt();
}
} // namespace

TEST(SpectrumPanel, MissingSoundDeviceGivesOneMessageAndAStillDisplay)
{
    Host h("No Such Card");
    EXPECT_EQ(h.panel->start(), WaveStatus::BadDevice);
    for (auto [name, caption] : { std::pair { "lblReflvl", "Ref: 30 dB" }, { "lblMaxHold", "0" },
             { "lblMax", "0 dB anl" }, { "lblFreq", "0 Hz" }, { "Label23", "0" } })
        EXPECT_EQ(h.text(name), caption) << name;
    auto* timer1 = h.panel->findChild<QTimer*>("Timer1");
    EXPECT_TRUE(timer1->isActive());
    EXPECT_EQ(timer1->interval(), 1);
    const QImage before = h.image();
    QTest::qWait(100);
    h.panel->start(); // the main window is activated again
    QTest::qWait(20);
    EXPECT_EQ(h.image(), before);
    EXPECT_EQ(h.prompts.shown, QStringList { "The sound input device \"No Such Card\" was not found." });
    h.panel->stop();
    EXPECT_FALSE(timer1->isActive());
}

TEST(SpectrumPanel, ToneFromAWaveFileShowsItsFrequencyAndLevel)
{
    // 1000 Hz lies between bins 371 and 372 (2.6917 Hz apart); bin 372 is nearer and shows
    // 372 * 1.344855 = 500 Hz. Its level: 0.5 * 4096 * sinc(0.48 bins) = 62.6 dB, smoothed over
    // 26 buffers to 58.6, less 25: 33.
    Host h;
    ASSERT_TRUE(h.playTone());
    EXPECT_EQ(h.text("lblFreq"), "500 Hz");
    EXPECT_TRUE(h.text("lblMax").endsWith(" dB anl"));
    EXPECT_NEAR(number(h.text("lblMax")), 33, 1);
    EXPECT_TRUE(h.prompts.shown.isEmpty());
    // The trace peaks at bin 372, 58.6 dB: (30 + 50 - 58.6) * 12.5 = 268 units down.
    const QPointF top = topOfTrace(h.image());
    EXPECT_NEAR(top.x(), 372, 4);
    EXPECT_NEAR(top.y(), 268, 6);
    // A higher reference level moves the trace down by 12.5 units per dB.
    h.panel->findChild<QScrollBar*>("scrReflvl")->setValue(50);
    EXPECT_EQ(h.text("lblReflvl"), "Ref: 50 dB");
    EXPECT_NEAR(topOfTrace(h.image()).y(), 268 + 250, 6);
}

TEST(SpectrumPanel, MaximumHoldKeepsThePeakUntilClearMax)
{
    Host h;
    const QVector<qint16> quiet(8192 * 10, 0);
    ASSERT_TRUE(h.playTone());
    const QString peak = h.text("lblMax");
    EXPECT_EQ(h.text("lblMaxHold"), peak);
    ASSERT_GT(number(peak), 20);
    ASSERT_TRUE(h.play("quiet.wav", quiet)); // ten buffers of silence: 0.9^10 of the height
    EXPECT_LT(number(h.text("lblMax")), number(peak) - 10);
    EXPECT_EQ(h.text("lblMaxHold"), peak);
    QTest::mouseClick(h.panel->findChild<QPushButton*>("ClearMax"), Qt::LeftButton);
    EXPECT_EQ(h.text("lblMaxHold"), "0");
    ASSERT_TRUE(h.play("quiet.wav", quiet));
    EXPECT_EQ(h.text("lblMaxHold"), h.text("lblMax") == "0 dB anl" ? "0" : h.text("lblMax"));
}

TEST(SpectrumPanel, DifferenceModeDrawsNoChangeOnTheCentreLine)
{
    Host h;
    ASSERT_TRUE(h.play("tone.wav", WavTestFile::tone(1000, 0.5, 8192 * 5)));
    auto* diff = h.panel->findChild<QCheckBox*>("chkDiff");
    diff->setChecked(true);
    const QImage image = h.image();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == SpectrumPicture::TraceColour) {
                ASSERT_NEAR(y, image.height() / 2, 1) << x;
            }
    h.panel->prepare(); // activation clears difference mode
    EXPECT_FALSE(diff->isChecked());
    EXPECT_FALSE(h.panel->state().differenceMode);
}

TEST(SpectrumPanel, UnreadableWaveFileGivesOneMessage)
{
    Host h;
    h.dir.write("bad.wav", "not a wave file at all");
    EXPECT_FALSE(h.panel->openWaveFile(h.dir.file("bad.wav")));
    ASSERT_EQ(h.prompts.shown.size(), 1);
    EXPECT_TRUE(h.prompts.shown[0].startsWith("The file " + h.dir.file("bad.wav") + " is not a recording"))
        << h.prompts.shown[0].toStdString();
}

// Recordings at 44.1 and 48 kHz look as the same sound at the monitor's own 22050 samples/s:
// a tone the sound card could not have passed shows nothing (the old reader folded 15 kHz
// down to a "36 dB anl" carrier), a tone below shows the same texts.
TEST(SpectrumPanel, RecordingsAtOtherRatesShowWhatTheSoundCardWould)
{
    Host reference;
    ASSERT_TRUE(reference.playTone(1000, 22050));
    const QStringList at22050 = reference.texts();
    EXPECT_EQ(at22050[0], "500 Hz");
    for (const int rate : { 44100, 48000 }) {
        SCOPED_TRACE(rate);
        Host h;
        ASSERT_TRUE(h.playTone(1000, rate));
        EXPECT_EQ(h.texts(), at22050);
        Host high;
        ASSERT_TRUE(high.playTone(15000, rate));
        EXPECT_EQ(high.text("lblMax"), "0 dB anl");
        EXPECT_EQ(high.text("lblMaxHold"), "0");
    }
}

TEST(SpectrumPanel, BackFromARecordingToTheSoundCard)
{
    Host h("No Such Card");
    ASSERT_TRUE(h.playTone());
    h.panel->useSoundCard();
    EXPECT_EQ(h.prompts.shown, QStringList { "The sound input device \"No Such Card\" was not found." });
}
