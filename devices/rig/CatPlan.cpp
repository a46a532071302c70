#include "devices/rig/CatPlan.h"

#include "devices/rig/CatCodec.h"

namespace {
const QString Com1 = QStringLiteral("Com1");
const QString Com2 = QStringLiteral("Com2");

// The Com2 column's frequency for option 1..3 and band 1..3.
QString com2Channel(int index, int band)
{
    static const char* const table[3][3] = {
        { "5010000", "14410000", "43210000" },
        { "5020000", "14420000", "43220000" },
        { "5090000", "14490000", "43290000" },
    };
    if (index < 1 || index > 3 || band < 1 || band > 3)
        return {};
    return QString::fromLatin1(table[index - 1][band - 1]);
}
} // namespace

namespace CatPlan {

CatSteps sendFreq(const QString& frequencyText, const RigSetup& setup)
{
    CatSteps steps { CatStep::open(1), CatStep::open(2), CatStep::write(2, Cat::plainText(frequencyText)) };
    const QByteArray binary = Cat::frequencyCommand(frequencyText, Cat::digitCount(setup.band));
    if (setup.rigPort == Com1 && !setup.com1Text)
        steps << CatStep::write(1, binary);
    else if (setup.rigPort == Com1 && setup.com1Text)
        steps << sendFreqText(frequencyText);
    else if (setup.rigPort == Com2 && !setup.com2Text)
        steps << CatStep::write(2, binary);
    else if (setup.rigPort == Com2 && setup.com2Text)
        steps << sendFreqText(frequencyText); // deliberate: the text command goes to Com1
    return steps;
}

CatSteps sendFreqText(const QString& frequencyText)
{
    return { CatStep::write(1, Cat::frequencyTextCommand(frequencyText)) };
}

Preset preset(int index, const RigSetup& setup)
{
    if (index < 1 || index > 5)
        return {};
    Preset p;
    auto send = [&](const QString& text) {
        p.frequencyText = text;
        p.steps << sendFreq(text, setup);
    };

    if (setup.rigPort == Com1 && !setup.com1Text) {
        static const char* const channel[] = { "14410000", "14420000", "14490000" };
        // deliberate: options 2 and 3 set USB here but CW with the rig on Com2
        p.steps << CatStep::write(1, (index == 1 || index == 4) ? Cat::ModeCw : Cat::ModeUsb);
        if (index <= 3)
            send(QString::fromLatin1(channel[index - 1]));
    } else if (setup.rigPort == Com1 && setup.com1Text) {
        // deliberate: mode before frequency for option 1, after it for option 2, none for 3
        switch (index) {
        case 1:
            p.frequencyText = QStringLiteral("14410000");
            p.steps << CatStep::write(1, Cat::TextModeCw) << sendFreqText(*p.frequencyText);
            break;
        case 2:
            p.frequencyText = QStringLiteral("14420000");
            p.steps << sendFreqText(*p.frequencyText) << CatStep::write(1, Cat::TextModeCw);
            break;
        case 3:
            p.frequencyText = QStringLiteral("14490000");
            p.steps << sendFreqText(*p.frequencyText);
            break;
        case 4:
            p.steps << CatStep::write(1, Cat::TextModeCw);
            break;
        case 5:
            p.steps << CatStep::write(1, Cat::TextModeUsb);
            break;
        }
    } else if (setup.rigPort == Com2) {
        if (index == 1 && setup.band == 1) {
            // deliberate: the 50 MHz channel goes out as plain text only, no mode, no BCD
            p.frequencyText = com2Channel(1, 1);
            p.steps << CatStep::write(2, Cat::plainText(*p.frequencyText));
        } else if (index <= 3) {
            // option 1 on band 2 follows its neighbours: CW and 144.100
            const QString channel = com2Channel(index, setup.band);
            if (!channel.isEmpty()) {
                p.steps << CatStep::write(2, Cat::ModeCw);
                send(channel);
            }
        } else {
            p.steps << CatStep::write(2, index == 4 ? Cat::ModeCw : Cat::ModeUsb);
        }
    }
    return p;
}

CatSteps ptt(bool on, const RigSetup& setup)
{
    const QByteArray bytes = on ? Cat::PttOn : Cat::PttOff;
    if (setup.rigPort == Com1)
        return { CatStep::write(1, bytes) };
    if (setup.rigPort == Com2)
        return { CatStep::write(2, bytes) };
    return {};
}

bool textDialect(const RigSetup& setup)
{
    return (setup.rigPort == Com1 && setup.com1Text) || (setup.rigPort == Com2 && setup.com2Text);
}

} // namespace CatPlan
