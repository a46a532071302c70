#pragma once
// The card as the QSL window shows it: a white 140 x 90 mm face at a fixed scale carrying one
// label or text box per item of a card design (objectName = item name), and the two signature
// picture boxes. It hands its contents back as a card design, so what it shows is what prints.
// A one-line text too long for its control is shown smaller, as the printed card shows it.
#include "qsl/CardDesign.h"

#include <QFrame>

class QLabel;
struct SignaturePictures;

class CardFace : public QFrame {
    Q_OBJECT
public:
    static constexpr qreal PxPerMm = 5.0; // on-screen scale of the card

    explicit CardFace(const CardDesign& design, QWidget* parent = nullptr);

    // The design with each control's place and current text.
    CardDesign design() const;
    void setText(const QString& name, const QString& text);
    QString text(const QString& name) const;
    // Every text (labels and boxes) from the design; places stay.
    void setTexts(const CardDesign& design);
    // Shows the pictures in `Picture1` and `Picture2`; a missing one is hidden.
    void showPictures(const SignaturePictures& pictures);

private:
    QWidget* build(const CardItem& item);
    QRect toPixels(const QRectF& mm) const;
    // The item's font, smaller where its one-line text would not fit the control's width.
    void fit(QWidget* widget, const QString& text);

    CardDesign design_;
    QLabel* picture1_ = nullptr;
    QLabel* picture2_ = nullptr;
};
