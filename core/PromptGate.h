#pragma once
// Stands between every service and the operator's prompts, so that a fault gives one message:
// texts of the start-up are gathered into one box, a fault is reported once per run, and once
// the program is closing nothing is shown any more (an open box goes). Station holds one;
// everything else talks to it as to any Prompts.
#include "core/Prompts.h"

#include <QSet>

class PromptGate : public Prompts {
public:
    explicit PromptGate(Prompts& shown)
        : shown_(shown)
    {
    }

    // Shown now, or gathered during the start-up; only logged while closing or silenced.
    void information(const QString& text) override;
    // Asked now (a question cannot wait); answered No while closing or silenced.
    bool question(const QString& text) override;
    void dismiss() override { shown_.dismiss(); }

    enum class Fault {
        // may follow from a cause told before: silenced after one in the start-up
        FollowUp,
        // a fault of its own: told even after a cause
        Standalone,
        // a fault of its own, and the start-up's texts after it only follow from it (a logbook
        // that cannot be read cannot list beacons either)
        Cause,
    };
    // Like information(), but a text reported before in this run is only logged.
    void reportOnce(const QString& text, Fault fault = Fault::FollowUp);

    // From here to finishStartup() texts are gathered.
    void beginStartup();
    // Shows what the start-up gathered as one box (identical texts once).
    void finishStartup();
    bool isStarting() const { return phase_ == Phase::Starting; }

    // The program is ending: an open box is dismissed and nothing is shown from now on.
    void beginClosing();
    bool isClosing() const { return phase_ == Phase::Closing; }

    // While one lives, texts are only logged (a message that another one replaces).
    class Silence {
    public:
        explicit Silence(PromptGate& gate)
            : gate_(gate)
        {
            ++gate_.silenced_;
        }
        ~Silence() { --gate_.silenced_; }
        Silence(const Silence&) = delete;
        Silence& operator=(const Silence&) = delete;

    private:
        PromptGate& gate_;
    };

private:
    enum class Phase { Starting, Running, Closing };
    bool showable(const QString& text);

    Prompts& shown_;
    Phase phase_ = Phase::Running;
    int silenced_ = 0;
    bool followUpsSilenced_ = false;
    QStringList gathered_;
    QSet<QString> reported_;
};
