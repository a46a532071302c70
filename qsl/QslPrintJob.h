#pragma once
// Puts QSL cards onto a printer or PDF file: one card per page, drawn at its real size from
// the page's top-left corner (shrunk only when the page is smaller than a card), and tells
// whether every page reached the device.
#include "qsl/QslCards.h"

#include <QList>
#include <QString>

class CardDesign;
class QPagedPaintDevice;
class QPainter;
class QPrinter;
struct SignaturePictures;

struct PrintResult {
    bool ok = true;
    int pages = 0;
    QString error; // why printing failed, as a sentence
};

class QslPrintJob {
public:
    // A 140 x 90 mm page without margins: the card itself.
    static void useCardPage(QPagedPaintDevice& device);
    // What stands in the way of printing on `printer` before anything is marked (no PDF file
    // chosen, its folder missing, no printer installed); empty when it looks ready.
    static QString preflight(const QPrinter& printer);

    // Prints `design` once per entry of `cards` (each overlaid on the design), or once as it
    // stands when `cards` is empty.
    static PrintResult print(QPagedPaintDevice& device, const CardDesign& design,
        const QList<CardTexts>& cards, const SignaturePictures& pictures);
    // The same onto a painter already begun on `device` (print preview).
    static int paintPages(QPainter& painter, QPagedPaintDevice& device, const CardDesign& design,
        const QList<CardTexts>& cards, const SignaturePictures& pictures, QString* error = nullptr);
};
