#include "core/SilenceWatch.h"

SilenceWatch::State SilenceWatch::tick(bool open, bool answered)
{
    if (!open || answered)
        missed_ = 0;
    else
        ++missed_;
    state_ = !open ? State::Closed : missed_ >= SilentTicks ? State::Silent : State::Answering;
    return state_;
}
