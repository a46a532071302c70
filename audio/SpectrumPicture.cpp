#include "audio/SpectrumPicture.h"

#include "audio/SpectrumState.h"

#include <QPainter>
#include <QPen>
#include <QPointF>
#include <algorithm>
#include <vector>

namespace {
// The picture's scale, 1200 x 1200 units from (-100, -100), mapped onto the image by hand: a
// painter without a transformation draws thin lines on its fast path.
struct Scale {
    explicit Scale(const QImage& image)
        : sx(image.width() / 1200.0)
        , sy(image.height() / 1200.0)
    {
    }
    QPointF operator()(double x, double y) const { return { (x + 100.0) * sx, (y + 100.0) * sy }; }
    double sx;
    double sy;
};

QPen thinPen(QRgb colour)
{
    QPen pen { QColor::fromRgb(colour) };
    pen.setWidth(0);
    return pen;
}
} // namespace

SpectrumPicture::SpectrumPicture(QSize size)
{
    resize(size);
}

void SpectrumPicture::resize(QSize size)
{
    image_ = QImage(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image_.fill(Background);
}

void SpectrumPicture::drawFrame(QRgb grid)
{
    image_.fill(Background);
    const Scale at(image_);
    QPainter p(&image_);
    p.setPen(thinPen(grid));
    for (int x = 0; x <= 1000; x += 100)
        p.drawLine(at(x, 0), at(x, 1000));
    for (int y = 0; y <= 1000; y += 125)
        p.drawLine(at(0, y), at(1000, y));
    p.drawLine(at(500, -100), at(500, 1100));
    p.drawLine(at(-100, 500), at(1100, 500));
}

void SpectrumPicture::drawTrace(const SpectrumState& state, int last)
{
    last = std::min({ last, LastVisibleBin, SpectrumState::LastDbIndex });
    if (last < 1)
        return;
    const Scale at(image_);
    std::vector<QPointF> points;
    points.reserve(last + 1);
    for (int k = 0; k <= last; ++k)
        points.push_back(at(k, state.tracePosition(k)));
    QPainter p(&image_);
    p.setPen(thinPen(TraceColour));
    p.drawPolyline(points.data(), static_cast<int>(points.size()));
}
