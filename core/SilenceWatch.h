#pragma once
// Whether a device that is asked on every tick can still be believed: its port is closed or
// gone, it answers, or its port is open but it has not answered for SilentTicks ticks in a row
// (a frozen or unplugged device keeps the port open). Readouts fed by it are shown only while
// it answers.

class SilenceWatch {
public:
    enum class State { Closed, Answering, Silent };
    static constexpr int SilentTicks = 3;

    // One tick: whether the port is open and whether anything arrived since the last tick.
    // Returns the new state.
    State tick(bool open, bool answered);
    State state() const { return state_; }
    bool answering() const { return state_ == State::Answering; }

private:
    int missed_ = 0;
    State state_ = State::Closed;
};
