/* Makes the exchanges of a connection with nothing around them: opens the port, asks for the version, closes it, opens it
 * again, and asks for all that the wizard asks for. The wizard's time is measured against this one's.
 *
 * Usage: bare_exchange PORT
 *
 * Prints as many lines as the wizard, and at the same places, since a line costs its reader time too: the last is
 * "connected", after the last answer. */

#define _GNU_SOURCE
#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

static void require(bool succeeded, const char *what) {
    if (!succeeded) {
        perror(what);
        exit(1);
    }
}

static int open_port(const char *path) {
    const int port = open(path, O_RDWR | O_NOCTTY);
    require(port >= 0, path);
    require(flock(port, LOCK_EX | LOCK_NB) == 0, "flock");
    require(ioctl(port, TIOCEXCL) == 0, "TIOCEXCL");
    struct termios line;
    require(tcgetattr(port, &line) == 0, "tcgetattr");
    cfmakeraw(&line);
    cfsetspeed(&line, B115200);
    line.c_cflag |= CLOCAL | CREAD;
    line.c_cc[VMIN] = 0;
    line.c_cc[VTIME] = 20;
    require(tcsetattr(port, TCSANOW, &line) == 0, "tcsetattr");
    return port;
}

static void close_port(int port) {
    ioctl(port, TIOCNXCL);
    close(port);
}

static void read_all(int port, unsigned char *bytes, size_t length) {
    for (size_t received = 0; received < length;) {
        const ssize_t count = read(port, bytes + received, length - received);
        require(count > 0, "read");
        received += (size_t)count;
    }
}

static void say(const char *line) {
    puts(line);
    fflush(stdout);
}

static void ask(int port, char type) {
    const char query[4] = {'c', 'b', type, 0};
    require(write(port, query, sizeof query) == sizeof query, "write");
    unsigned char answer[4 + 255];
    read_all(port, answer, 4);
    read_all(port, answer + 4, answer[3]);
}

int main(int count, char **arguments) {
    require(count == 2, "bare_exchange PORT");
    int port = open_port(arguments[1]);
    say("opened");
    ask(port, 'v');
    close_port(port);
    say("version");
    say("a dongle");
    say("all dongles");
    port = open_port(arguments[1]);
    for (const char *type = "vsxpdhk"; *type != '\0'; ++type) {
        ask(port, *type);
        if (*type == 'v' || *type == 's' || *type == 'd') {
            say("answered");
        }
        if (*type == 's') {
            say("settings next");
        }
    }
    say("settings read");
    say("connected");
    close_port(port);
}
