#pragma once
// Back colours given as the station's RGB integers (255 red, 65280 green, 65535 yellow: red in
// the low byte). The value is also kept in the widget's "backColor" property for tests.
class QWidget;

namespace BackColour {
void set(QWidget* widget, int rgb);
// The last value set, -1 when none.
int of(const QWidget* widget);
} // namespace BackColour
