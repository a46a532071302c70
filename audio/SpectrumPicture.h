#pragma once
// The picture of the spectrum monitor, kept in an image so it survives repaints: a scale of
// 1200 x 1200 units with the top-left corner at (-100, -100), the grid with its centre cross,
// and the green trace of one bin per unit.
#include <QImage>
#include <QRgb>
#include <QSize>

class SpectrumState;

class SpectrumPicture {
public:
    static constexpr QRgb Background = 0xFF000000;
    static constexpr QRgb GridColour = 0xFFC0C0C0;
    static constexpr QRgb TraceColour = 0xFF00FF00;
    // The picture ends at x = 1100; bins beyond it would fall outside.
    static constexpr int LastVisibleBin = 1100;

    explicit SpectrumPicture(QSize size = QSize(400, 300));

    void resize(QSize size);
    const QImage& image() const { return image_; }

    // Clears the picture and draws the grid lines and the centre cross.
    void drawFrame(QRgb grid = GridColour);
    // Joins the positions of bins 0..last (as far as the picture reaches) in the trace colour.
    void drawTrace(const SpectrumState& state, int last);

private:
    QImage image_;
};
