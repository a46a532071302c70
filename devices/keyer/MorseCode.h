#pragma once
// The Morse table with its procedure signs, and the timing of the keyer: what the key line does
// for each character, as steps of key-down or silence with their lengths. Pure functions.
#include <QChar>
#include <QString>

#include <vector>

namespace Morse {

// Pattern of "." and "-" closed by "0" (the player stops there); nullptr for a character not
// in the table. Letters are in the table in lower case only.
const char* pattern(QChar c);

// Element length in ms for the speed option 1 ("50 lpm") 100, 2 ("60 lpm") 75, 3 ("70 lpm") 50;
// other options count as 1.
int unitMs(int speedIndex);
// A dash is three and a half units (deliberate: not three), rounded to whole milliseconds.
int dashMs(int unitMs);

struct Step {
    bool keyDown; // true: key down for ms, then up; false: silence for ms
    int ms;
    bool operator==(const Step&) const = default;
};
using Steps = std::vector<Step>;

// decode: one character played. Upper-case letters play as lower case; a space plays a word
// space; a character not in the table plays nothing. Each element is followed by a one-unit
// gap, the closing "0" by a two-unit word space.
Steps decode(QChar c, int unitMs);
// A character within a sent text: decode, then a word space.
Steps textCharacter(QChar c, int unitMs);
// Total length in ms of a text sent once.
qint64 textMs(const QString& text, int unitMs);

// The text the "TXT Sel" toggle chooses: pressed sends Text6, released Text1.
QString selectedText(bool txtSelPressed, const QString& text6, const QString& text1);

} // namespace Morse
