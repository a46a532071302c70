#pragma once
// What each rig action sends to which port: the frequency sender, the channel and mode presets
// of the "FT847" group cell by cell, push-to-talk. Decisions only; RigController carries them out.
#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// How the rig is wired: which port carries it ("Com1" or "Com2"; any other text matches
// neither), which ports speak the text dialect, and the selected VHF band (1, 2 or 3).
struct RigSetup {
    QString rigPort = QStringLiteral("Com1");
    bool com1Text = false; // Check2
    bool com2Text = false; // Check3
    int band = 2;
};

struct CatStep {
    enum class Action { OpenIfClosed, Write };
    Action action = Action::Write;
    int com = 1; // 1 or 2
    QByteArray bytes;

    static CatStep open(int com) { return { Action::OpenIfClosed, com, {} }; }
    static CatStep write(int com, const QByteArray& bytes) { return { Action::Write, com, bytes }; }
    bool operator==(const CatStep&) const = default;
};
using CatSteps = QList<CatStep>;

namespace CatPlan {

// SendFreq: open Com1 and Com2 when closed, the text unchanged to Com2, then the binary command
// to the rig's port, or the text command (always to Com1) when that port speaks the text dialect.
CatSteps sendFreq(const QString& frequencyText, const RigSetup& setup);
// SendFreqText: "FA..." to Com1.
CatSteps sendFreqText(const QString& frequencyText);

struct Preset {
    CatSteps steps;
    std::optional<QString> frequencyText; // the window's new frequency text, if it changes
};
// OptFT847_Click for an option index 1..5 (anything else sends nothing).
Preset preset(int index, const RigSetup& setup);

// Push-to-talk bytes to the rig's port (never the text dialect).
CatSteps ptt(bool on, const RigSetup& setup);

// True when the rig's port speaks the text dialect (the keyer then uses "TX1;"/"TX0;").
bool textDialect(const RigSetup& setup);

} // namespace CatPlan
