#include "core/PromptGate.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcPromptGate, "kestrel.core.prompts")

bool PromptGate::showable(const QString& text)
{
    if (phase_ == Phase::Closing || silenced_ > 0 || (phase_ == Phase::Starting && followUpsSilenced_)) {
        qCInfo(lcPromptGate).noquote() << "not shown:" << text;
        return false;
    }
    return true;
}

void PromptGate::information(const QString& text)
{
    if (!showable(text))
        return;
    if (phase_ == Phase::Starting) {
        if (!gathered_.contains(text))
            gathered_ << text;
        return;
    }
    shown_.information(text);
}

bool PromptGate::question(const QString& text)
{
    if (phase_ == Phase::Closing || silenced_ > 0) {
        qCInfo(lcPromptGate).noquote() << "not asked, answered No:" << text;
        return false;
    }
    return shown_.question(text);
}

void PromptGate::reportOnce(const QString& text, Fault fault)
{
    if (reported_.contains(text)) {
        qCInfo(lcPromptGate).noquote() << "reported before:" << text;
        return;
    }
    // a follow-up silenced now still counts as told: it is not shown later either
    reported_.insert(text);
    if (fault == Fault::FollowUp) {
        information(text);
        return;
    }
    const bool followUps = std::exchange(followUpsSilenced_, false);
    information(text);
    followUpsSilenced_ = followUps || (fault == Fault::Cause && phase_ == Phase::Starting);
}

void PromptGate::beginStartup()
{
    phase_ = Phase::Starting;
    gathered_.clear();
    followUpsSilenced_ = false;
}

void PromptGate::finishStartup()
{
    if (phase_ != Phase::Starting)
        return;
    phase_ = Phase::Running;
    followUpsSilenced_ = false;
    const QStringList texts = std::exchange(gathered_, {});
    if (!texts.isEmpty())
        shown_.information(texts.join(QStringLiteral("\n\n")));
}

void PromptGate::beginClosing()
{
    phase_ = Phase::Closing;
    gathered_.clear();
    shown_.dismiss();
}
