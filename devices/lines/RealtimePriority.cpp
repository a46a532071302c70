#include "devices/lines/RealtimePriority.h"

#include <pthread.h>
#include <sched.h>

namespace RealtimePriority {

bool raiseCurrentThread()
{
    sched_param param {};
    param.sched_priority = 10; // above ordinary threads, below the kernel's own
    return pthread_setschedparam(pthread_self(), SCHED_FIFO, &param) == 0;
}

} // namespace RealtimePriority
