#include "ui/rig/BackColour.h"

#include <QColor>
#include <QVariant>
#include <QWidget>

namespace BackColour {

void set(QWidget* widget, int rgb)
{
    const QColor c(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
    widget->setProperty("backColor", rgb);
    widget->setStyleSheet(
        QStringLiteral("background-color: %1; color: %2;")
            .arg(c.name(), c.lightness() > 110 ? QStringLiteral("black") : QStringLiteral("white")));
}

int of(const QWidget* widget)
{
    const QVariant v = widget->property("backColor");
    return v.isValid() ? v.toInt() : -1;
}

} // namespace BackColour
