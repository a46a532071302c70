#include "qsl/CardPainter.h"

#include "qsl/CardDesign.h"
#include "qsl/SignaturePictures.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
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

QFont CardPainter::fitted(
    const QFont& font, const QString& text, const QSizeF& room, QPaintDevice* device, bool fitHeight)
{
    QFont f = font;
    // Advance widths leave out the overhang of the last glyph; a small reserve keeps its ink in.
    const qreal width = room.width() * 0.97;
    for (int guard = 0; guard < 64; ++guard) {
        const QSizeF need = QFontMetricsF(f, device).size(0, text);
        const qreal scale = std::min(need.width() > width ? width / need.width() : 1.0,
            fitHeight && need.height() > room.height() ? room.height() / need.height() : 1.0);
        if (scale >= 1.0 || f.pixelSize() <= 1)
            return f;
        // Glyph widths do not scale exactly with the size: measure again at the new size.
        f.setPixelSize(std::max(1, std::min(f.pixelSize() - 1, static_cast<int>(f.pixelSize() * scale))));
    }
    return f;
}

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
        // A box holds its lines whole; a label keeps room above and below (see the clip).
        p.setFont(fitted(font, item.text, textRect.size(), p.device(), item.kind == CardItem::Kind::Box));
        // Fitted, the text stays inside; the clip only guards the pictures and the next box
        // should a text not fit even at the smallest size. Labels keep room for tall glyphs.
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
