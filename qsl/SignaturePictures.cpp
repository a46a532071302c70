#include "qsl/SignaturePictures.h"

#include "qsl/QslLogging.h"

#include <QFileInfo>

namespace {

QImage loadPicture(const QString& path, QStringList& notes)
{
    QImage image;
    if (!QFileInfo::exists(path))
        notes << QStringLiteral("Picture %1 not found: the card is printed without it.").arg(path);
    else if (!image.load(path) || image.isNull())
        notes << QStringLiteral("Picture %1 cannot be read: the card is printed without it.").arg(path);
    if (image.isNull())
        qCInfo(lcQsl) << notes.last();
    return image;
}

// Width of a picture shown `heightMm` high, keeping its own proportions.
qreal widthAt(const QSize& px, qreal heightMm)
{
    return px.height() > 0 ? heightMm / px.height() * px.width() : 0.0;
}

qreal topOf(const QSizeF& cardMm)
{
    return (cardMm.height() - SignaturePictures::TopOffsetMm) / 1.2;
}

} // namespace

SignaturePictures SignaturePictures::load(const QString& directory)
{
    SignaturePictures p;
    p.sign = loadPicture(directory + SignFile, p.notes);
    p.clubSign = loadPicture(directory + ClubSignFile, p.notes);
    return p;
}

QRectF SignaturePictures::clubSignRect(const QSizeF& cardMm, const QSize& clubPx)
{
    if (clubPx.isEmpty())
        return QRectF();
    const qreal w = widthAt(clubPx, ClubSignHeightMm);
    return QRectF(cardMm.width() - EdgeMm - w, topOf(cardMm), w, ClubSignHeightMm);
}

QRectF SignaturePictures::signRect(const QSizeF& cardMm, const QSize& signPx, const QSize& clubPx)
{
    if (signPx.isEmpty())
        return QRectF();
    const QRectF club = clubSignRect(cardMm, clubPx);
    const qreal right = club.isEmpty() ? cardMm.width() - EdgeMm : club.left() - GapMm;
    const qreal w = widthAt(signPx, SignHeightMm);
    return QRectF(right - w, topOf(cardMm), w, SignHeightMm);
}
