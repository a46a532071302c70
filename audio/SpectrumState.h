#pragma once
// The spectrum monitor's state between buffers: transform arrays, the smoothed spectrum in dB,
// the difference-mode reference, reference level and scale, and the strongest level with its
// frequency. Turns one recorded buffer into levels and gives the trace's vertical positions.
#include "audio/RadixTwoFft.h"

#include <QString>
#include <QtGlobal>
#include <vector>

class WaveBuffer;

class SpectrumState {
public:
    static constexpr int LastTransformIndex = 16384;
    static constexpr int LastDbIndex = 8193;
    // deliberate: fixed frequency factor per bin, not derived from the sample rate.
    static constexpr double HzPerBin = 1.344855;
    // The drawn plot spans 0..1000 units in both directions; one division is 125 units.
    static constexpr double UnitsPerDivision = 125.0;
    static constexpr double TopClamp = -50.0;
    static constexpr double BottomClamp = 1000.0;
    // Label23: for every k past the drawn range (k > 1000) the side value reads the smoothed
    // spectrum at k - 800, already updated for this buffer, so it ends on bin 3296: far above any
    // receiver's audio passband, it shows the noise floor of the sound input.
    static constexpr int SideLimit = 1000;
    static constexpr int SideOffset = 800;

    SpectrumState();

    // Values set when the main window becomes active.
    void reset();

    // Copies the buffer into the transform arrays (imaginary parts 0) and transforms them.
    void GetAudio(const WaveBuffer& buffer);
    // Levels, smoothing by one tenth, strongest level and its frequency, side value; then the
    // strongest level lowered by 25 dB and clamped at 0.
    void computeLevels();

    // Vertical position of bin k in plot units, clamped to -50..1000.
    double tracePosition(int k) const;
    // Difference mode compares the live spectrum with a snapshot taken when it is switched on.
    void setDifferenceMode(bool on);

    int transformLength() const { return length; }

    QString sampleRateText;
    int sampleRate = 0;
    QString lengthText;
    int length = 0;
    // Kept with the display settings: Hz per vertical grid division (100 bins) and Hz across
    // the 1000 drawn bins, at 22050 samples/s.
    QString hzPerDivisionText;
    QString spanText;

    std::vector<double> real;
    std::vector<double> imag;
    std::vector<double> smoothed;
    std::vector<double> reference;

    float refLevel = 30.0f;
    float dbPerDivision = 10.0f;
    float strongest = 0.0f;
    qint16 peakFrequency = 0;
    double sideValue = 0.0;
    bool differenceMode = false;

private:
    RadixTwoFft fft_;
    std::vector<double> levels_;
};
