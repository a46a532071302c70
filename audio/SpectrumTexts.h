#pragma once
// Captions of the spectrum monitor's labels, built from its state.
#include <QString>
#include <QtGlobal>

namespace SpectrumTexts {
// "Ref: 30 dB"
QString refCaption(float level);
// The strongest level cut to its whole part: "33 dB anl".
QString maxCaption(float strongest);
// Maximum hold: the caption of lblMax when its number is greater than the held one.
QString heldCaption(const QString& held, const QString& max);
// "500 Hz"
QString freqCaption(qint16 frequency);
// The side value without its fraction.
QString sideCaption(double value);
// The number a caption starts with, as Basic's Val reads it ("33 dB anl" -> 33, "x" -> 0).
double leadingNumber(const QString& text);
} // namespace SpectrumTexts
