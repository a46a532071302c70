#pragma once
// Paints one QSL card with QPainter: every label with its text, every text box with its text
// inside a thin frame, each in its own font and place, and the signature pictures. Works on
// any paint device; sizes are physical (millimetres and points), scaled by the given pixels
// per millimetre. A text too long for its place is drawn smaller until it fits, never cut.
#include <QFont>
#include <QPointF>
#include <QSizeF>

class CardDesign;
class QPaintDevice;
class QPainter;
struct SignaturePictures;

class CardPainter {
public:
    // The card's top-left corner at `origin` (device pixels); `pxPerMm` device pixels make a
    // millimetre. Fonts and frames scale with it, so a smaller scale gives a smaller card.
    static void paint(QPainter& painter, const CardDesign& design, const SignaturePictures& pictures,
        const QPointF& origin, qreal pxPerMm);
    // `font` made smaller until `text` (one or more lines) fits `room` in width, and in height
    // when asked; never larger. Measured as `device` draws it.
    static QFont fitted(
        const QFont& font, const QString& text, const QSizeF& room, QPaintDevice* device, bool fitHeight);
};
