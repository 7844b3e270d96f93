// Makes the exchanges of a connection with nothing around them: opens the port, asks for the version, closes it, opens it
// again, and asks for all that the wizard asks for. The wizard's time is measured against this one's.
//
// Usage: bare_exchange PORT
//
// Prints "connected" after the last answer.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        std::perror(what);
        std::exit(1);
    }
}

int openPort(const char* path) {
    const int port = ::open(path, O_RDWR | O_NOCTTY);
    require(port >= 0, path);
    require(::flock(port, LOCK_EX | LOCK_NB) == 0, "flock");
    require(::ioctl(port, TIOCEXCL) == 0, "TIOCEXCL");
    termios line{};
    require(::tcgetattr(port, &line) == 0, "tcgetattr");
    ::cfmakeraw(&line);
    ::cfsetspeed(&line, B115200);
    line.c_cflag |= CLOCAL | CREAD;
    line.c_cc[VMIN] = 0;
    line.c_cc[VTIME] = 20;
    require(::tcsetattr(port, TCSANOW, &line) == 0, "tcsetattr");
    return port;
}

void closePort(int port) {
    ::ioctl(port, TIOCNXCL);
    ::close(port);
}

void readAll(int port, unsigned char* bytes, size_t length) {
    for (size_t received = 0; received < length;) {
        const ssize_t count = ::read(port, bytes + received, length - received);
        require(count > 0, "read");
        received += static_cast<size_t>(count);
    }
}

void ask(int port, char type) {
    const std::array<char, 4> query{'c', 'b', type, 0};
    require(::write(port, query.data(), query.size()) == 4, "write");
    std::array<unsigned char, 4 + 255> answer{};
    readAll(port, answer.data(), 4);
    readAll(port, answer.data() + 4, answer[3]);
}

}  // namespace

int main(int, char** arguments) {
    int port = openPort(arguments[1]);
    ask(port, 'v');
    closePort(port);
    port = openPort(arguments[1]);
    for (const char type : std::string{"vsxpdhk"}) {
        ask(port, type);
    }
    std::puts("connected");
    std::fflush(stdout);
    closePort(port);
}
