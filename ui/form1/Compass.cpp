#include "ui/form1/Compass.h"

#include <QPainter>
#include <QtMath>

Compass::Compass(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Compass::setHeading(std::optional<int> degrees)
{
    heading_ = degrees;
    update();
}

void Compass::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    card_ = QPixmap();
}

void Compass::drawCard()
{
    const qreal dpr = devicePixelRatioF();
    card_ = QPixmap(size() * dpr);
    card_.setDevicePixelRatio(dpr);
    card_.fill(palette().window().color());
    QPainter p(&card_);
    p.setRenderHint(QPainter::Antialiasing);

    const qreal side = qMin(width(), height()) - 8.0;
    const qreal r = side / 2.0;
    p.translate(width() / 2.0, height() / 2.0);

    p.setPen(QPen(QColor(90, 90, 90), 2));
    p.setBrush(QColor(250, 250, 244));
    p.drawEllipse(QPointF(0, 0), r, r);

    // ticks every 10 degrees, longer every 30
    for (int d = 0; d < 360; d += 10) {
        const qreal a = qDegreesToRadians(qreal(d));
        const qreal inner = r - (d % 30 == 0 ? 10.0 : 5.0);
        p.setPen(QPen(QColor(110, 110, 110), d % 90 == 0 ? 2 : 1));
        p.drawLine(
            QPointF(inner * qSin(a), -inner * qCos(a)), QPointF((r - 1) * qSin(a), -(r - 1) * qCos(a)));
    }
    QFont f = font();
    f.setBold(true);
    f.setPointSizeF(qMax(7.0, side / 18.0));
    p.setFont(f);
    p.setPen(QColor(60, 60, 60));
    const char* const names[] = { "N", "E", "S", "W" };
    for (int k = 0; k < 4; ++k) {
        const qreal a = qDegreesToRadians(qreal(90 * k));
        const qreal rr = r - 10.0 - f.pointSizeF();
        const QPointF c(rr * qSin(a), -rr * qCos(a));
        p.drawText(QRectF(c.x() - 12, c.y() - 10, 24, 20), Qt::AlignCenter, QString::fromLatin1(names[k]));
    }
}

void Compass::paintEvent(QPaintEvent*)
{
    if (card_.isNull() || card_.deviceIndependentSize().toSize() != size())
        drawCard();
    QPainter p(this);
    p.drawPixmap(0, 0, card_);
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(width() / 2.0, height() / 2.0);
    const qreal r = (qMin(width(), height()) - 8.0) / 2.0;
    if (heading_) {
        const qreal a = qDegreesToRadians(qreal(*heading_));
        p.setPen(QPen(QColor(255, 0, 0), 3, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(0, 0), QPointF((r - 4) * qSin(a), -(r - 4) * qCos(a)));
    } else {
        // no needle: the heading is not known, and the card says so
        p.setPen(QColor(128, 128, 128));
        p.drawText(
            QRectF(-r, 6, 2 * r, r / 2), Qt::AlignHCenter | Qt::AlignTop, QStringLiteral("heading unknown"));
    }
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(60, 60, 60));
    p.drawEllipse(QPointF(0, 0), 3.5, 3.5);
}
