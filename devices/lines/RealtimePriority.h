#pragma once
// Timed output threads (keying, motor pulses) ask for a real-time priority so their edges stay
// on time on a busy machine. Where the system does not allow it (no CAP_SYS_NICE,
// RLIMIT_RTPRIO 0) the thread runs on as an ordinary one.
namespace RealtimePriority {
// For the calling thread; true when granted.
bool raiseCurrentThread();
} // namespace RealtimePriority
