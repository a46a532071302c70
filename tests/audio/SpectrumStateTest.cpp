#include "audio/SpectrumState.h"
#include "audio/SpectrumTexts.h"
#include "audio/WaveBuffer.h"

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

TEST(WaveBuffer, ReadSampleScalesSixteenBitsToUnitRange)
{
    WaveBuffer b;
    b.setSample(0, -32768);
    b.setSample(1, 32767);
    b.setSample(8191, 16384);
    EXPECT_EQ(b.bytes().size(), 16384);
    EXPECT_DOUBLE_EQ(b.ReadSample(0), -1.0);
    EXPECT_DOUBLE_EQ(b.ReadSample(1), 32767.0 / 32768.0);
    EXPECT_DOUBLE_EQ(b.ReadSample(8191), 0.5);
    EXPECT_EQ(b.ReadSample(2), 0.0);
}

TEST(SpectrumState, StartValuesAndArrayBounds)
{
    SpectrumState s;
    EXPECT_EQ(s.refLevel, 30.0f);
    EXPECT_EQ(s.dbPerDivision, 10.0f);
    EXPECT_EQ(s.sampleRateText, "22050");
    EXPECT_EQ(s.sampleRate, 22050);
    EXPECT_EQ(s.lengthText, "8192");
    EXPECT_EQ(s.length, 8192);
    EXPECT_EQ(s.hzPerDivisionText, "270");
    EXPECT_EQ(s.spanText, "2700");
    EXPECT_EQ(s.real.size(), 16385u);
    EXPECT_EQ(s.imag.size(), 16385u);
    EXPECT_EQ(s.smoothed.size(), 8194u);
    EXPECT_EQ(s.reference.size(), 8194u);
    s.refLevel = 55;
    s.differenceMode = true;
    s.reset();
    EXPECT_EQ(s.refLevel, 30.0f);
    EXPECT_FALSE(s.differenceMode);
}

TEST(SpectrumState, SilenceApproachesMinus140ByOneTenthPerBuffer)
{
    SpectrumState s;
    const WaveBuffer silence;
    for (int n = 1; n <= 30; ++n) {
        feed(s, silence, 1);
        const double expected = -140.0 * (1.0 - std::pow(0.9, n));
        for (int k : { 0, 1, 372, 2048, 4096 })
            ASSERT_NEAR(s.smoothed[k], expected, 1e-9) << "buffer " << n << " bin " << k;
    }
    EXPECT_EQ(s.smoothed[4097], 0.0); // only bins 0..N/2 are computed
    EXPECT_EQ(s.strongest, 0.0f);
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "0 dB anl");
    EXPECT_EQ(s.peakFrequency, 0);
    // Label23's bin 3296 follows the same curve.
    EXPECT_EQ(SpectrumTexts::sideCaption(s.sideValue), "-134");
}

TEST(SpectrumState, PureToneGivesItsBinFrequencyAndLevel)
{
    // Amplitude 0.5 on bin 372: unscaled magnitude 0.5 * 8192 / 2 = 2048, 66.23 dB.
    SpectrumState s;
    const double level = 20.0 * std::log10(2048.0);
    const WaveBuffer tone = binTone(372, 0.5);
    feed(s, tone, 1);
    EXPECT_NEAR(s.smoothed[372], level / 10.0, 1e-3);
    EXPECT_EQ(s.peakFrequency, 500); // 372 * 1.344855 = 500.29
    EXPECT_EQ(s.strongest, 0.0f); // 6.6 dB lowered by 25: clamped at 0
    feed(s, tone, 39);
    const double smoothedPeak = level * (1.0 - std::pow(0.9, 40));
    EXPECT_NEAR(s.smoothed[372], smoothedPeak, 1e-3);
    EXPECT_NEAR(s.strongest, smoothedPeak - 25.0, 1e-3);
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "40 dB anl"); // 65.25 - 25
    EXPECT_EQ(SpectrumTexts::freqCaption(s.peakFrequency), "500 Hz");
}

TEST(SpectrumState, FrequencyOfOtherBinsRoundsToTheNearestHertz)
{
    const struct {
        int bin;
        int hz;
    } cases[] = { { 1, 1 }, { 100, 134 }, { 371, 499 }, { 743, 999 }, { 1000, 1345 }, { 4000, 5379 } };
    for (const auto& c : cases) {
        SpectrumState s;
        feed(s, binTone(c.bin, 0.25), 1);
        EXPECT_EQ(s.peakFrequency, c.hz) << "bin " << c.bin;
    }
}

TEST(SpectrumState, LevelOf25DbOrLessShowsZero)
{
    // Amplitude chosen for a converged level just under 25 dB: 10^(24.9/20) / 4096.
    SpectrumState s;
    feed(s, binTone(500, std::pow(10.0, 24.9 / 20.0) / 4096.0), 200);
    EXPECT_NEAR(s.smoothed[500], 24.9, 0.05);
    EXPECT_EQ(s.strongest, 0.0f);
    EXPECT_EQ(SpectrumTexts::maxCaption(s.strongest), "0 dB anl");
    EXPECT_EQ(s.peakFrequency, 672);
}

TEST(SpectrumState, SilenceKeepsTheLastPeakFrequency)
{
    SpectrumState s;
    feed(s, binTone(372, 0.5), 3);
    feed(s, WaveBuffer(), 60);
    EXPECT_LT(s.smoothed[372], 0.0);
    EXPECT_EQ(s.strongest, 0.0f);
    EXPECT_EQ(s.peakFrequency, 500);
}

TEST(SpectrumState, TracePositionNormalMode)
{
    // Top of the plot at reference + 50 dB, 125 units per 10 dB, clamps at -50 and 1000.
    SpectrumState s;
    const struct {
        double level;
        double y;
    } cases[]
        = { { 80, 0 }, { 0, 1000 }, { 60, 250 }, { 84, -50 }, { 100, -50 }, { -140, 1000 }, { 79.2, 10 } };
    for (const auto& c : cases) {
        s.smoothed[10] = c.level;
        EXPECT_NEAR(s.tracePosition(10), c.y, 1e-6) << c.level;
    }
    s.refLevel = 50;
    s.smoothed[10] = 60;
    EXPECT_NEAR(s.tracePosition(10), 500, 1e-6);
    s.dbPerDivision = 20;
    EXPECT_NEAR(s.tracePosition(10), 250, 1e-6);
}

TEST(SpectrumState, TracePositionDifferenceMode)
{
    SpectrumState s;
    s.smoothed[5] = 40;
    s.smoothed[6] = -20;
    s.setDifferenceMode(true);
    EXPECT_EQ(s.reference[5], 40.0);
    EXPECT_NEAR(s.tracePosition(5), 500, 1e-9); // unchanged: centre line
    EXPECT_NEAR(s.tracePosition(6), 500, 1e-9);
    s.smoothed[5] = 50; // 10 dB stronger than the snapshot: one division up
    EXPECT_NEAR(s.tracePosition(5), 375, 1e-9);
    s.smoothed[6] = -70; // 50 dB weaker: down, clamped
    EXPECT_NEAR(s.tracePosition(6), 1000, 1e-9);
    s.smoothed[5] = 200;
    EXPECT_NEAR(s.tracePosition(5), -50, 1e-9);
    // Staying on keeps the snapshot; switching on again takes a new one.
    s.setDifferenceMode(true);
    EXPECT_EQ(s.reference[5], 40.0);
    s.setDifferenceMode(false);
    s.setDifferenceMode(true);
    EXPECT_EQ(s.reference[5], 200.0);
}

TEST(SpectrumTexts, Captions)
{
    EXPECT_EQ(SpectrumTexts::refCaption(30.0f), "Ref: 30 dB");
    EXPECT_EQ(SpectrumTexts::refCaption(-5.0f), "Ref: -5 dB");
    EXPECT_EQ(SpectrumTexts::maxCaption(40.99f), "40 dB anl");
    EXPECT_EQ(SpectrumTexts::maxCaption(0.0f), "0 dB anl");
    EXPECT_EQ(SpectrumTexts::freqCaption(500), "500 Hz");
    EXPECT_EQ(SpectrumTexts::sideCaption(-14.7), "-14");
    EXPECT_EQ(SpectrumTexts::sideCaption(3.9), "3");
}

TEST(SpectrumTexts, MaximumHoldComparesTheNumbers)
{
    using SpectrumTexts::heldCaption;
    EXPECT_EQ(heldCaption("0", "33 dB anl"), "33 dB anl");
    EXPECT_EQ(heldCaption("33 dB anl", "20 dB anl"), "33 dB anl");
    EXPECT_EQ(heldCaption("33 dB anl", "33 dB anl"), "33 dB anl");
    EXPECT_EQ(heldCaption("9 dB anl", "10 dB anl"), "10 dB anl"); // numbers, not texts
    EXPECT_EQ(heldCaption("0", "0 dB anl"), "0");
    EXPECT_DOUBLE_EQ(SpectrumTexts::leadingNumber(" 12.5 Hz"), 12.5);
    EXPECT_DOUBLE_EQ(SpectrumTexts::leadingNumber("-3 dB"), -3.0);
    EXPECT_DOUBLE_EQ(SpectrumTexts::leadingNumber("dB"), 0.0);
}

TEST(SpectrumState, GetAudioIsTheTransformOfTheSamples)
{
    WaveBuffer b;
    for (int n = 0; n < WaveBuffer::Samples; ++n)
        b.setSample(n, static_cast<qint16>((n * 7919) % 65536 - 32768));
    std::vector<double> re(WaveBuffer::Samples), im(WaveBuffer::Samples, 0.0);
    for (int n = 0; n < WaveBuffer::Samples; ++n)
        re[n] = b.ReadSample(n);
    RadixTwoFft(WaveBuffer::Samples).transform(re.data(), im.data());
    SpectrumState s;
    s.GetAudio(b);
    for (int k = 0; k < WaveBuffer::Samples; ++k) {
        ASSERT_EQ(s.real[k], re[k]) << k;
        ASSERT_EQ(s.imag[k], im[k]) << k;
    }
}
