#include "devices/keyer/MorseCode.h"

#include <cmath>

namespace Morse {

const char* pattern(QChar c)
{
    struct Entry {
        char c;
        const char* p;
    };
    static constexpr Entry table[] = {
        { '0', "-----0" },
        { '1', ".----0" },
        { '2', "..---0" },
        { '3', "...--0" },
        { '4', "....-0" },
        { '5', ".....0" },
        { '6', "-....0" },
        { '7', "--...0" },
        { '8', "---..0" },
        { '9', "----.0" },
        { 'a', ".-0" },
        { 'b', "-...0" },
        { 'c', "-.-.0" },
        { 'd', "-..0" },
        { 'e', ".0" },
        { 'f', "..-.0" },
        { 'g', "--.0" },
        { 'h', "....0" },
        { 'i', "..0" },
        { 'j', ".---0" },
        { 'k', "-.-0" },
        { 'l', ".-..0" },
        { 'm', "--0" },
        { 'n', "-.0" },
        { 'o', "---0" },
        { 'p', ".--.0" },
        { 'q', "--.-0" },
        { 'r', ".-.0" },
        { 's', "...0" },
        { 't', "-0" },
        { 'u', "..-0" },
        { 'v', "...-0" },
        { 'w', ".--0" },
        { 'x', "-..-0" },
        { 'y', "-.--0" },
        { 'z', "--..0" },
        { ',', "--..--0" },
        { '-', "-....-0" },
        { '.', ".-.-.-0" },
        { '/', "-..-.0" },
        { '\\', "-..-.0" },
        { '=', "-...-0" },
        { '?', "..--..0" },
        { ':', "---...0" },
        { '(', "-.--.-0" },
        { ')', "-.--.-0" },
        { '\'', ".-..-.0" },
        { '*', ".-...0" },
        { '@', "-.--.0" },
        { '&', ".-.-.0" },
        { '%', "...-.0" },
        { '~', "-...-.-0" },
        { '>', "...-...-...-0" },
        { '<', "...-.-0" },
    };
    const char16_t u = c.unicode();
    const char16_t key = (u >= 'A' && u <= 'Z') ? static_cast<char16_t>(u - 'A' + 'a') : u;
    for (const Entry& e : table)
        if (key == static_cast<unsigned char>(e.c))
            return e.p;
    return nullptr;
}

int unitMs(int speedIndex)
{
    switch (speedIndex) {
    case 2:
        return 75;
    case 3:
        return 50;
    default:
        return 100;
    }
}

int dashMs(int unitMs)
{
    return static_cast<int>(std::lround(unitMs * 3.5));
}

Steps decode(QChar c, int unitMs)
{
    Steps steps;
    if (c == QLatin1Char(' ')) {
        steps.push_back({ false, 2 * unitMs }); // word space
        return steps;
    }
    const char* p = pattern(c);
    if (!p)
        return steps;
    // At most 20 positions; every pattern of the table ends in "0" well before.
    for (int i = 0; i < 20 && p[i] != '\0'; ++i) {
        if (p[i] == '0') {
            steps.push_back({ false, 2 * unitMs }); // word space closes the character
            break;
        }
        if (p[i] == '-' || p[i] == '.') {
            steps.push_back({ true, p[i] == '-' ? dashMs(unitMs) : unitMs });
            steps.push_back({ false, unitMs }); // gap after the element
        }
    }
    return steps;
}

Steps textCharacter(QChar c, int unitMs)
{
    Steps steps = decode(c, unitMs);
    steps.push_back({ false, 2 * unitMs });
    return steps;
}

qint64 textMs(const QString& text, int unitMs)
{
    qint64 total = 0;
    for (const QChar c : text)
        for (const Step& s : textCharacter(c, unitMs))
            total += s.ms;
    return total;
}

QString selectedText(bool txtSelPressed, const QString& text6, const QString& text1)
{
    return txtSelPressed ? text6 : text1;
}

} // namespace Morse
