#pragma once
// The one-line summary of a contact written to GEdata (the description of its map placemark):
// "Log: DL1ABC 14200 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y Prop:Tr tnx".
// The unit " kHz " stands for every band, also those whose band text is in MHz (deliberate).
#include <QString>

struct SummaryValues {
    QString callsign;
    QString band;
    QString date; // dd.MM.yyyy or yyyy-MM-dd
    QString time; // HH:mm:ss, HH:mm or HHmm
    QString rsts;
    QString rstr;
    float distanceKm = 0.0f;
    float bearing = 0.0f;
    QString qsl;
    QString prop;
    QString comment;
};

namespace ContactSummary {
// The summary text.
QString text(const SummaryValues& v);
// The same with distance and bearing already as numberText writes them.
QString text(const SummaryValues& v, const QString& distanceText, const QString& bearingText);
// A date formatted " dd.MM.yyyy" (with its leading blank); text that is no date stays as it is.
QString dateText(const QString& date);
// A time formatted "HH:mm"; text that is no time stays as it is.
QString timeText(const QString& time);
// A single-precision number in the default number-to-text form: up to 7 significant digits,
// no trailing zeros ("512", "87.5", "1234.568").
QString numberText(float value);
} // namespace ContactSummary
