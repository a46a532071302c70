#include "audio/SpectrumState.h"

#include "audio/WaveBuffer.h"

#include <cmath>

SpectrumState::SpectrumState()
    : real(LastTransformIndex + 1)
    , imag(LastTransformIndex + 1)
    , smoothed(LastDbIndex + 1)
    , reference(LastDbIndex + 1)
    , fft_(WaveBuffer::Samples)
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
    for (int i = 0; i < length; ++i) {
        real[i] = buffer.ReadSample(i);
        imag[i] = 0.0;
    }
    fft_.transform(real.data(), imag.data());
}

void SpectrumState::computeLevels()
{
    static const double ln10 = std::log(10.0);
    strongest = 0.0f;
    for (int k = 0; k <= length / 2; ++k) {
        const double magnitude = std::sqrt(real[k] * real[k] + imag[k] * imag[k]);
        const double level = 20.0 * std::log(magnitude + 0.0000001) / ln10;
        smoothed[k] = smoothed[k] + (level - smoothed[k]) / 10.0;
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
