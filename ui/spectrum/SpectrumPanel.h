#pragma once
// The audio spectrum monitor on the main window: Picture2 with its reference-level scroll bar,
// the SigMax, MaxHold and FreqMax labels, and Timer1, which takes each recorded buffer from the
// sound card (or a recording), transforms it and draws it. Decisions live in audio/.
#include "audio/SpectrumState.h"
#include "audio/WaveBuffer.h"
#include "audio/WaveCapture.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QScrollBar;
class QTimer;
class SpectrumView;
class Station;

class SpectrumPanel : public QWidget {
    Q_OBJECT
public:
    SpectrumPanel(Station& station, QWidget* parent = nullptr);
    ~SpectrumPanel() override;

    // Activation of the main window, in order: prepare(), DrawSpectrumFrame(), StartWaveInput(),
    // Timer1 every millisecond. Returns the status of StartWaveInput.
    int start();
    // Query-unload: StopWaveInput() and Timer1 stopped.
    void stop();

    // Reference level 30 ("Ref: 30 dB"), 10 dB per division, "22050", "8192", "270", "2700",
    // lblMaxHold "0", difference mode off.
    void prepare();
    int StartWaveInput();
    void StopWaveInput();
    // One tick's work on a recorded buffer: transform, then levels, frame and trace.
    void GetAudio();
    void DrawSpectrum();
    void DrawSpectrumFrame();

    // Shows a recording instead of the sound card, from its start; false (and one message) when
    // the file cannot be read. Paced plays it in real time.
    bool openWaveFile(const QString& path, bool paced = true);
    // Back to the sound card named in Kestrel.ini.
    void useSoundCard();

    SpectrumState& state() { return state_; }
    WaveCapture& capture() { return capture_; }

private:
    void tick();
    void refLevelChanged(int value);
    void clearMax();
    void differenceToggled(bool on);
    void redrawPicture(int last);

    SpectrumState state_;
    WaveCapture capture_;
    WaveBuffer buffer_;
    int lastDrawn_ = 0;

    SpectrumView* picture2_;
    QScrollBar* scrReflvl_;
    QLabel* lblReflvl_;
    QLabel* lblMax_;
    QLabel* lblMaxHold_;
    QPushButton* clearMax_;
    QLabel* lblFreq_;
    QLabel* label23_;
    QCheckBox* chkDiff_;
    QTimer* timer1_;
};
