#pragma once

#include <sys/syscall.h>
#include <sys/types.h>

#include <fstream>
#include <string>

namespace velmorindal {

/// Whether the system says that this thread of the process is asleep in a wait for a descriptor.
inline bool isInsideWait(pid_t thread) {
    std::ifstream file{"/proc/self/task/" + std::to_string(thread) + "/syscall"};
    long call = -1;
    file >> call;
#ifdef SYS_poll
    return call == SYS_poll || call == SYS_ppoll;
#else
    return call == SYS_ppoll;
#endif
}

}  // namespace velmorindal
