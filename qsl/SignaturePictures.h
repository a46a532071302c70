#pragma once
// The two signature pictures of the card, "/Sign.bmp" (Picture1) and "/ClubSign.bmp"
// (Picture2) from the program's folder, and where they stand on the card: scaled to 500 and
// 900 twips high, side by side at the right-hand edge, their top at (card height - 600 twips)
// / 1.2. A missing or unreadable picture is left out with a note.
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>

struct SignaturePictures {
    static inline const QString SignFile = QStringLiteral("/Sign.bmp");
    static inline const QString ClubSignFile = QStringLiteral("/ClubSign.bmp");
    static constexpr qreal MmPerTwip = 25.4 / 1440.0;
    static constexpr qreal SignHeightMm = 500 * MmPerTwip;
    static constexpr qreal ClubSignHeightMm = 900 * MmPerTwip;
    static constexpr qreal TopOffsetMm = 600 * MmPerTwip;
    static constexpr qreal EdgeMm = 4.0; // from the card's right-hand edge
    static constexpr qreal GapMm = 2.0; // between the two pictures

    QImage sign;
    QImage clubSign;
    QStringList notes; // one sentence per picture left out

    // Loads both from `directory` (the program's folder, without a trailing separator).
    static SignaturePictures load(const QString& directory);

    // Places on a card of `cardMm`; an empty rectangle for a missing picture. The club sign
    // stands at the edge, the personal signature to its left (at the edge when alone).
    static QRectF signRect(const QSizeF& cardMm, const QSize& signPx, const QSize& clubPx);
    static QRectF clubSignRect(const QSizeF& cardMm, const QSize& clubPx);
    QRectF signRect(const QSizeF& cardMm) const { return signRect(cardMm, sign.size(), clubSign.size()); }
    QRectF clubSignRect(const QSizeF& cardMm) const { return clubSignRect(cardMm, clubSign.size()); }
};
