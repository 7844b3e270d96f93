#include "LineEcho.h"

#include <termios.h>

namespace velmorindal {

void stopEcho(int descriptor) {
    termios attributes{};
    if (::tcgetattr(descriptor, &attributes) != 0) {
        return;
    }
    attributes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ISIG);
    ::tcsetattr(descriptor, TCSANOW, &attributes);
}

}  // namespace velmorindal
