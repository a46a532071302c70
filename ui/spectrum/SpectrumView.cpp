#include "ui/spectrum/SpectrumView.h"

#include <QPainter>
#include <QResizeEvent>

SpectrumView::SpectrumView(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("Picture2"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SpectrumView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.drawImage(0, 0, picture_.image());
}

void SpectrumView::resizeEvent(QResizeEvent* event)
{
    picture_.resize(event->size());
    emit resized();
}
