#include "audio/SpectrumState.h"
#include "audio/SpectrumTexts.h"
#include "audio/WaveBuffer.h"

#include <QStringList>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {
// A cosine exactly on bin k (a whole number of periods in the buffer).
WaveBuffer binTone(int k, double amplitude)
{
    WaveBuffer b;
    for (int n = 0; n < WaveBuffer::Samples; ++n)
        b.setSample(n,
            static_cast<qint16>(std::lround(
                amplitude * 32768.0 * std::cos(2.0 * std::numbers::pi * k * n / WaveBuffer::Samples))));
    return b;
}

void feed(SpectrumState& s, const WaveBuffer& b, int times)
{
    for (int i = 0; i < times; ++i) {
        s.GetAudio(b);
        s.computeLevels();
    }
}
} // namespace

TEST(SpectrumState, ActivationSetsTheSoundParameters)
{
    SpectrumState s;
    s.refLevel = 55;
    s.dbPerDivision = 20;
    s.differenceMode = true;
    s.reset();
    EXPECT_EQ(QStringList({ s.sampleRateText, s.lengthText, s.hzPerDivisionText, s.spanText }),
        QStringList({ "22050", "8192", "270", "2700" }));
    EXPECT_EQ(s.refLevel, 30.0f);
    EXPECT_EQ(s.dbPerDivision, 10.0f);
    EXPECT_FALSE(s.differenceMode);
}

TEST(SpectrumState, SilenceApproachesMinus140ByOneTenthPerBuffer)
{
    SpectrumState s;
    for (int n = 1; n <= 30; ++n) {
        feed(s, WaveBuffer(), 1);
        for (int k : { 0, 1, 372, 2048, 4096 })
            ASSERT_NEAR(s.smoothed[k], -140.0 * (1.0 - std::pow(0.9, n)), 1e-9) << n << " bin " << k;
    }
    EXPECT_EQ(s.smoothed[4097], 0.0); // only bins 0..N/2 are computed
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "0 dB anl");
    EXPECT_EQ(s.peakFrequency, 0);
    EXPECT_EQ(SpectrumTexts::sideCaption(s.sideValue), "-134"); // Label23's bin 3296, same curve
}

TEST(SpectrumState, PureToneGivesItsBinFrequencyAndLevel)
{
    // Amplitude 0.5 on bin 372: unscaled magnitude 0.5 * 8192 / 2 = 2048, 66.23 dB.
    SpectrumState s;
    const double level = 20.0 * std::log10(2048.0);
    const WaveBuffer tone = binTone(372, 0.5);
    feed(s, tone, 1);
    EXPECT_NEAR(s.smoothed[372], level / 10.0, 1e-3);
    EXPECT_EQ(SpectrumTexts::freqCaption(s.peakFrequency), "500 Hz"); // 372 * 1.344855 = 500.29
    EXPECT_EQ(s.strongest, 0.0f); // 6.6 dB lowered by 25: clamped at 0
    feed(s, tone, 39);
    EXPECT_NEAR(s.strongest, level * (1.0 - std::pow(0.9, 40)) - 25.0, 1e-3);
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "40 dB anl");
    // Silence lets the level sink but keeps the last peak's frequency.
    feed(s, WaveBuffer(), 60);
    EXPECT_EQ(s.strongest, 0.0f);
    EXPECT_EQ(s.peakFrequency, 500);

    // Other bins: k * 1.344855 rounded, not cut (371 -> 498.94, 1000 -> 1344.86).
    for (auto [bin, hz] : { std::pair { 1, 1 }, { 371, 499 }, { 1000, 1345 }, { 4000, 5379 } }) {
        SpectrumState t;
        feed(t, binTone(bin, 0.25), 1);
        EXPECT_EQ(t.peakFrequency, hz) << "bin " << bin;
    }
}

TEST(SpectrumState, LevelOf25DbOrLessShowsZero)
{
    // Amplitude chosen for a converged level just under 25 dB: 10^(24.9/20) / 4096.
    SpectrumState s;
    feed(s, binTone(500, std::pow(10.0, 24.9 / 20.0) / 4096.0), 200);
    EXPECT_NEAR(s.smoothed[500], 24.9, 0.05);
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "0 dB anl");
    EXPECT_EQ(s.peakFrequency, 672);
}

TEST(SpectrumState, TracePositions)
{
    // Top of the plot at reference + 50 dB, 125 units per 10 dB, clamps at -50 and 1000.
    SpectrumState s;
    for (auto [level, y] :
        { std::pair { 80.0, 0.0 }, { 0, 1000 }, { 60, 250 }, { 84, -50 }, { -140, 1000 }, { 79.2, 10 } }) {
        s.smoothed[10] = level;
        EXPECT_NEAR(s.tracePosition(10), y, 1e-6) << level;
    }
    s.refLevel = 50;
    s.dbPerDivision = 20;
    s.smoothed[10] = 60;
    EXPECT_NEAR(s.tracePosition(10), 250, 1e-6);

    // Difference mode: the change since it was switched on, unchanged on the centre line.
    s = SpectrumState();
    s.smoothed[5] = 40;
    s.setDifferenceMode(true);
    EXPECT_NEAR(s.tracePosition(5), 500, 1e-9);
    for (auto [level, y] : { std::pair { 50.0, 375.0 }, { -10, 1000 }, { 200, -50 } }) {
        s.smoothed[5] = level;
        EXPECT_NEAR(s.tracePosition(5), y, 1e-9) << level;
    }
    s.setDifferenceMode(true); // staying on keeps the snapshot, switching on again takes a new one
    EXPECT_EQ(s.reference[5], 40.0);
    s.setDifferenceMode(false);
    s.setDifferenceMode(true);
    EXPECT_EQ(s.reference[5], 200.0);
}

TEST(SpectrumTexts, CaptionsCutToWholeNumbersAndHoldCompares)
{
    using namespace SpectrumTexts;
    EXPECT_EQ(refCaption(-5.0f), "Ref: -5 dB");
    EXPECT_EQ(maxCaption(40.99f), "40 dB anl");
    EXPECT_EQ(sideCaption(-14.7), "-14");
    EXPECT_EQ(sideCaption(3.9), "3");
    EXPECT_EQ(heldCaption("0", "33 dB anl"), "33 dB anl");
    EXPECT_EQ(heldCaption("33 dB anl", "20 dB anl"), "33 dB anl");
    EXPECT_EQ(heldCaption("9 dB anl", "10 dB anl"), "10 dB anl"); // numbers, not texts
    EXPECT_EQ(heldCaption("0", "0 dB anl"), "0");
}
