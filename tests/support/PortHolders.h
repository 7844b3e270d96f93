#pragma once

namespace velmorindal {

// Python programs that hold the node given as their one argument, each in one of the two ways that there are,
// say "held", and let go when their standard input ends.

inline constexpr const char* holdByLock = R"(
import fcntl, os, sys
node = os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY)
fcntl.flock(node, fcntl.LOCK_EX | fcntl.LOCK_NB)
print("held", flush=True)
sys.stdin.read()
)";

inline constexpr const char* holdByExclusiveMode = R"(
import fcntl, os, sys, termios
node = os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY)
fcntl.ioctl(node, termios.TIOCEXCL)
print("held", flush=True)
sys.stdin.read()
fcntl.ioctl(node, termios.TIOCNXCL)
)";

/// For the name of a test with one of these as its parameter.
inline const char* nameOfHolder(const char* program) {
    return program == holdByLock ? "ByItsLock" : "ByItsExclusiveMode";
}

}  // namespace velmorindal
