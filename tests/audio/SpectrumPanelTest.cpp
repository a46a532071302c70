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
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {
struct Host {
    Host()
        : station(prompts)
    {
        window.resize(640, 520);
        panel = new SpectrumPanel(station, &window);
        window.setCentralWidget(panel);
        window.show();
    }
    QString text(const char* name) const { return panel->findChild<QLabel*>(name)->text(); }
    SpectrumView* picture() const { return panel->findChild<SpectrumView*>("Picture2"); }
    // Plays a file unpaced through the panel's Timer1 and waits for its end.
    bool play(const QString& path)
    {
        QSignalSpy ended(&panel->capture(), &WaveCapture::ended);
        return panel->openWaveFile(path, false) && ended.wait(20000);
    }

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

TEST(SpectrumPanel, ControlsCarryTheirNames)
{
    TempDir dir;
    Host h;
    for (const char* name : { "lblReflvl", "lblMax", "lblMaxHold", "lblFreq", "Label23" })
        EXPECT_NE(h.panel->findChild<QLabel*>(name), nullptr) << name;
    EXPECT_NE(h.picture(), nullptr);
    EXPECT_NE(h.panel->findChild<QScrollBar*>("scrReflvl"), nullptr);
    EXPECT_NE(h.panel->findChild<QPushButton*>("ClearMax"), nullptr);
    EXPECT_NE(h.panel->findChild<QCheckBox*>("chkDiff"), nullptr);
    EXPECT_NE(h.panel->findChild<QTimer*>("Timer1"), nullptr);
}

TEST(SpectrumPanel, MissingSoundDeviceGivesOneMessageAndAStillDisplay)
{
    TempDir dir;
    ExtensionSettings::setValue(ExtensionKey::AudioDevice, "No Such Card");
    Host h;
    EXPECT_EQ(h.panel->start(), WaveStatus::BadDevice);
    EXPECT_EQ(h.text("lblReflvl"), "Ref: 30 dB");
    EXPECT_EQ(h.text("lblMaxHold"), "0");
    EXPECT_EQ(h.text("lblMax"), "0 dB anl");
    EXPECT_EQ(h.text("lblFreq"), "0 Hz");
    auto* timer1 = h.panel->findChild<QTimer*>("Timer1");
    EXPECT_TRUE(timer1->isActive());
    EXPECT_EQ(timer1->interval(), 1);
    const QImage before = h.picture()->picture().image();
    QTest::qWait(100);
    h.panel->start(); // the main window is activated again
    QTest::qWait(20);
    EXPECT_EQ(h.picture()->picture().image(), before);
    EXPECT_EQ(h.prompts.shown, QStringList { "The sound input device \"No Such Card\" was not found." });
    h.panel->stop();
    EXPECT_FALSE(timer1->isActive());
}

TEST(SpectrumPanel, ToneFromAWaveFileShowsItsFrequencyAndLevel)
{
    // Ten seconds of 1000 Hz at half scale: 26 whole buffers. 1000 Hz lies between bins 371 and
    // 372 (2.6917 Hz apart); bin 372 is nearer and shows 372 * 1.344855 = 500 Hz. Its level:
    // 0.5 * 4096 * sinc(0.48 bins) = 62.6 dB, smoothed over 26 buffers to 58.6, less 25: 33.
    TempDir dir;
    Host h;
    const QString path
        = WavTestFile::writeMono16(dir.file("tone.wav"), WavTestFile::tone(1000, 0.5, 22050, 220500));
    ASSERT_TRUE(h.play(path));
    EXPECT_EQ(h.text("lblFreq"), "500 Hz");
    EXPECT_TRUE(h.text("lblMax").endsWith(" dB anl"));
    EXPECT_NEAR(number(h.text("lblMax")), 33, 1);
    EXPECT_EQ(h.text("lblMaxHold"), h.text("lblMax"));
    EXPECT_TRUE(h.prompts.shown.isEmpty());
    // The trace peaks at bin 372, 58.6 dB: (30 + 50 - 58.6) * 12.5 = 268 units down.
    const QPointF top = topOfTrace(h.picture()->picture().image());
    EXPECT_NEAR(top.x(), 372, 4);
    EXPECT_NEAR(top.y(), 268, 6);

    // A higher reference level moves the trace down by 12.5 units per dB.
    h.panel->findChild<QScrollBar*>("scrReflvl")->setValue(50);
    EXPECT_EQ(h.text("lblReflvl"), "Ref: 50 dB");
    EXPECT_NEAR(topOfTrace(h.picture()->picture().image()).y(), 268 + 250, 6);
}

TEST(SpectrumPanel, MaximumHoldKeepsThePeakUntilClearMax)
{
    TempDir dir;
    Host h;
    const QString tone
        = WavTestFile::writeMono16(dir.file("tone.wav"), WavTestFile::tone(1000, 0.5, 22050, 220500));
    const QString quiet = WavTestFile::writeMono16(dir.file("quiet.wav"), QVector<qint16>(8192 * 10, 0));
    ASSERT_TRUE(h.play(tone));
    const QString peak = h.text("lblMax");
    ASSERT_GT(number(peak), 20);
    ASSERT_TRUE(h.play(quiet)); // ten buffers of silence: the trace sinks to 0.9^10 of its height
    EXPECT_LT(number(h.text("lblMax")), number(peak) - 10);
    EXPECT_EQ(h.text("lblMaxHold"), peak);
    QTest::mouseClick(h.panel->findChild<QPushButton*>("ClearMax"), Qt::LeftButton);
    EXPECT_EQ(h.text("lblMaxHold"), "0");
    ASSERT_TRUE(h.play(quiet));
    EXPECT_EQ(h.text("lblMaxHold"), h.text("lblMax") == "0 dB anl" ? "0" : h.text("lblMax"));
}

TEST(SpectrumPanel, DifferenceModeDrawsNoChangeOnTheCentreLine)
{
    TempDir dir;
    Host h;
    const QString tone
        = WavTestFile::writeMono16(dir.file("tone.wav"), WavTestFile::tone(1000, 0.5, 22050, 8192 * 5));
    ASSERT_TRUE(h.play(tone));
    h.panel->findChild<QCheckBox*>("chkDiff")->setChecked(true);
    const QImage image = h.picture()->picture().image();
    const int centreRow = static_cast<int>(std::lround(600.0 / 1200.0 * image.height()));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == SpectrumPicture::TraceColour) {
                ASSERT_NEAR(y, centreRow, 1) << x;
            }
    // Activation clears difference mode.
    h.panel->prepare();
    EXPECT_FALSE(h.panel->findChild<QCheckBox*>("chkDiff")->isChecked());
    EXPECT_FALSE(h.panel->state().differenceMode);
}

TEST(SpectrumPanel, UnreadableWaveFileGivesOneMessage)
{
    TempDir dir;
    Host h;
    dir.write("bad.wav", "not a wave file at all");
    EXPECT_FALSE(h.panel->openWaveFile(dir.file("bad.wav")));
    EXPECT_EQ(h.prompts.shown, QStringList { "The file " + dir.file("bad.wav") + " is not a wave file." });
}
