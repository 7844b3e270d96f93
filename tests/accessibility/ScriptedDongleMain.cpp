#include <poll.h>
#include <unistd.h>

#include <array>
#include <exception>
#include <string>

#include "Print.h"
#include "ScriptedDongle.h"

namespace {

using namespace velmorindal;

constexpr int keepWaitingMilliseconds = 300;

/// Performs the orders on standard input, each confirmed by "done", until it is closed.
void performOrders(ScriptedDongle& dongle) {
    std::string orders;
    while (true) {
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (::poll(&input, 1, keepWaitingMilliseconds) == 0) {
            dongle.keepWaiting();
            continue;
        }
        std::array<char, 256> chunk{};
        const ssize_t count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
        if (count <= 0) {
            return;
        }
        orders.append(chunk.data(), static_cast<std::size_t>(count));
        for (auto end = orders.find('\n'); end != std::string::npos; end = orders.find('\n')) {
            dongle.perform(orders.substr(0, end));
            orders.erase(0, end + 1);
            print("done");
        }
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        writeLine(STDERR_FILENO, "Usage: velmorindal-scripted-dongle DIRECTORY NAME");
        return 2;
    }
    try {
        ScriptedDongle dongle{arguments[1], arguments[2]};
        print(dongle.path().string());
        performOrders(dongle);
    } catch (const std::exception& error) {
        writeLine(STDERR_FILENO, std::string{"velmorindal-scripted-dongle: "} + error.what());
        return 1;
    }
    return 0;
}
