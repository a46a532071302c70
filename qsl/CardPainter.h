#pragma once
// Paints one QSL card with QPainter: every label with its text, every text box with its text
// inside a thin frame, each in its own font and place, and the signature pictures. Works on
// any paint device; sizes are physical (millimetres and points), scaled by the given pixels
// per millimetre.
#include <QPointF>

class CardDesign;
class QPainter;
struct SignaturePictures;

class CardPainter {
public:
    // The card's top-left corner at `origin` (device pixels); `pxPerMm` device pixels make a
    // millimetre. Fonts and frames scale with it, so a smaller scale gives a smaller card.
    static void paint(QPainter& painter, const CardDesign& design, const SignaturePictures& pictures,
        const QPointF& origin, qreal pxPerMm);
};
