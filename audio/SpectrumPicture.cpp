#include "audio/SpectrumPicture.h"

#include "audio/SpectrumState.h"

#include <QPainter>
#include <QPen>
#include <QPointF>
#include <algorithm>
#include <vector>

namespace {
void scale(QPainter& p)
{
    p.setWindow(-100, -100, 1200, 1200);
}

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
    QPainter p(&image_);
    scale(p);
    p.setPen(thinPen(grid));
    for (int x = 0; x <= 1000; x += 100)
        p.drawLine(QPointF(x, 0), QPointF(x, 1000));
    for (int y = 0; y <= 1000; y += 125)
        p.drawLine(QPointF(0, y), QPointF(1000, y));
    p.drawLine(QPointF(500, -100), QPointF(500, 1100));
    p.drawLine(QPointF(-100, 500), QPointF(1100, 500));
}

void SpectrumPicture::drawTrace(const SpectrumState& state, int last)
{
    last = std::min({ last, LastVisibleBin, SpectrumState::LastDbIndex });
    if (last < 1)
        return;
    std::vector<QPointF> points;
    points.reserve(last + 1);
    for (int k = 0; k <= last; ++k)
        points.emplace_back(k, state.tracePosition(k));
    QPainter p(&image_);
    scale(p);
    p.setPen(thinPen(TraceColour));
    p.drawPolyline(points.data(), static_cast<int>(points.size()));
}
