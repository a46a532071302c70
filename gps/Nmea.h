#pragma once
// The NMEA 0183 sentence parsers of the GPS receiver (RMC, GGA, GSA, GSV) and their support
// routines. Every parser trims and upper-cases the sentence, checks its type, its "*" and its
// checksum, and fills the caller's outputs only when all three hold. The talker ("GP", "GN",
// "GL", "GA", "BD") is not looked at.
#include "gps/NmeaData.h"

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

// The field array of a sentence, indexed from 1: element 1 holds "$" + talker + type, element
// k + 1 NMEA field k. The elements are views into the text that was split.
class NmeaFields {
public:
    int count() const { return static_cast<int>(items_.size()); }
    bool has(int k) const { return k >= 1 && k <= count(); }
    // Element k (1-based); an empty view when there is none.
    QStringView operator[](int k) const { return has(k) ? items_[k - 1] : QStringView(); }
    void append(QStringView v) { items_.append(v); }
    void set(int k, QStringView v) { items_[k - 1] = v; }

private:
    QVarLengthArray<QStringView, 24> items_;
};

// Accept the sentence, fill the outputs and return true; or return false and touch nothing.
bool ParseRMC(const QString& sentence, RmcData& out);
bool ParseGGA(const QString& sentence, GgaData& out);
// Reads what it can: a short sentence with a good checksum fills what it holds.
bool ParseGSA(const QString& sentence, GsaData& out);
bool ParseGSV(const QString& sentence, GsvData& out);

// XOR of the character codes of the whole text.
qint32 NmeaChecksum(QStringView text);
// The text read as a hexadecimal number, case-blind ("6a" = 106). A text that is no
// hexadecimal number of 1 to 8 digits gives -1, which no checksum equals.
qint32 HexValue(QStringView text);
// Splits at every separator; a text without one gives one element holding all of it.
NmeaFields SplitFields(QStringView text, QChar separator);

namespace Nmea {
// A field read as a number the way the receiver's fields need it: blanks are skipped, a ","
// counts as a decimal point, reading stops at the first character that cannot continue the
// number ("2.1*39" gives 2.1), and a field without a number (" ") gives 0.
double number(QStringView field);
// True when the field (blanks around it allowed) is one plain decimal number.
bool isNumeric(QStringView field);
// "ddmm.mmmm" or "dddmm.mmmm" to degrees, rounded to 8 decimals, halves away from zero.
double degrees(QStringView field);
// Rounds to 8 decimals, halves away from zero.
double round8(double value);
// "hhmmss.ss" -> "hh:mm:ss" and "ddmmyy" -> "dd.mm.yy" from the first six characters.
QString timeText(QStringView field);
QString dateText(QStringView field);
} // namespace Nmea
