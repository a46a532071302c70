#include "audio/SpectrumState.h"

#include "audio/LevelMath.h"
#include "audio/WaveBuffer.h"

#include <cmath>

SpectrumState::SpectrumState()
    : real(LastTransformIndex + 1)
    , imag(LastTransformIndex + 1)
    , smoothed(LastDbIndex + 1)
    , reference(LastDbIndex + 1)
    , fft_(WaveBuffer::Samples)
    , levels_(LastDbIndex + 1)
{
    reset();
}

void SpectrumState::reset()
{
    refLevel = 30.0f;
    dbPerDivision = 10.0f;
    sampleRateText = QStringLiteral("22050");
    sampleRate = sampleRateText.toInt();
    lengthText = QStringLiteral("8192");
    length = lengthText.toInt();
    hzPerDivisionText = QStringLiteral("270");
    spanText = QStringLiteral("2700");
    differenceMode = false;
}

void SpectrumState::GetAudio(const WaveBuffer& buffer)
{
    // Each sample goes straight to its bit-reversed place, where the transform's reordering
    // would move it; the stages follow.
    const std::vector<int>& reversed = fft_.bitReversed();
    for (int i = 0; i < length; ++i) {
        real[i] = buffer.ReadSample(reversed[i]);
        imag[i] = 0.0;
    }
    fft_.butterflies(real.data(), imag.data());
}

void SpectrumState::computeLevels()
{
    const int last = length / 2;
    LevelMath::levels(real.data(), imag.data(), levels_.data(), last + 1);
    for (int k = 0; k <= last; ++k)
        smoothed[k] = smoothed[k] + (levels_[k] - smoothed[k]) / 10.0;
    // Every bin read below is already smoothed for this buffer, as in one loop over k.
    strongest = 0.0f;
    for (int k = 0; k <= last; ++k) {
        if (smoothed[k] > strongest) {
            strongest = static_cast<float>(smoothed[k]);
            // An Integer assignment rounds to nearest (ties to even), as nearbyint does.
            peakFrequency = static_cast<qint16>(std::nearbyint(k * HzPerBin));
        }
        if (k > SideLimit)
            sideValue = smoothed[k - SideOffset];
    }
    strongest -= 25.0f;
    if (strongest < 0.0f)
        strongest = 0.0f;
}

double SpectrumState::tracePosition(int k) const
{
    double y;
    if (differenceMode) {
        // No change sits on the centre line; a signal stronger than the snapshot rises above it.
        const double level = refLevel + (reference[k] - smoothed[k]);
        y = 500.0 + (level - refLevel) / dbPerDivision * UnitsPerDivision;
    } else {
        y = ((refLevel + 50.0) - smoothed[k]) / dbPerDivision * UnitsPerDivision;
    }
    if (y < TopClamp)
        y = TopClamp;
    if (y > BottomClamp)
        y = BottomClamp;
    return y;
}

void SpectrumState::setDifferenceMode(bool on)
{
    if (on && !differenceMode)
        reference = smoothed;
    differenceMode = on;
}
