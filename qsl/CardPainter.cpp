#include "qsl/CardPainter.h"

#include "qsl/CardDesign.h"
#include "qsl/SignaturePictures.h"

#include <QFont>
#include <QPainter>

#include <cmath>

namespace {

constexpr qreal MmPerPoint = 25.4 / 72.0;
constexpr qreal FrameMm = 0.25;

QFont fontOf(const CardItem& item, qreal pxPerMm)
{
    QFont f(item.family);
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(item.pointSize * MmPerPoint * pxPerMm))));
    f.setBold(item.bold);
    f.setItalic(item.italic);
    // Plain glyphs, no ligatures: the printed text stays searchable letter by letter.
    f.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::PreferNoShaping));
    return f;
}

} // namespace

void CardPainter::paint(QPainter& p, const CardDesign& design, const SignaturePictures& pictures,
    const QPointF& origin, qreal pxPerMm)
{
    const auto toDevice = [&](const QRectF& mm) {
        return QRectF(origin.x() + mm.x() * pxPerMm, origin.y() + mm.y() * pxPerMm, mm.width() * pxPerMm,
            mm.height() * pxPerMm);
    };
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const CardItem& item : design.items) {
        const QRectF rect = toDevice(item.rect);
        const QFont font = fontOf(item, pxPerMm);
        p.setFont(font);
        QRectF textRect = rect;
        if (item.kind == CardItem::Kind::Box) {
            // The text stands inside its frame, inset by a part of the font size.
            const qreal em = font.pixelSize();
            textRect = rect.adjusted(em * 0.3, em * 0.12, -em * 0.3, -em * 0.12);
            QPen frame(QColor(40, 40, 40));
            frame.setWidthF(FrameMm * pxPerMm);
            p.setPen(frame);
            p.setBrush(Qt::NoBrush);
            p.drawRect(rect);
        }
        if (item.text.isEmpty())
            continue;
        // Text ends where its control ends, as in the window: a long line never runs into the
        // pictures or the next box. Labels keep room above and below for tall glyphs.
        p.setClipRect(
            item.kind == CardItem::Kind::Box ? rect : rect.adjusted(0, -rect.height(), 0, rect.height()));
        p.setPen(item.colour);
        p.drawText(textRect, static_cast<int>(item.align) | Qt::TextDontClip, item.text);
        p.setClipping(false);
    }
    if (!pictures.sign.isNull())
        p.drawImage(toDevice(pictures.signRect(design.size)), pictures.sign);
    if (!pictures.clubSign.isNull())
        p.drawImage(toDevice(pictures.clubSignRect(design.size)), pictures.clubSign);
    p.restore();
}
