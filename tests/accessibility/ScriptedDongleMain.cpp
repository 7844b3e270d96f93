#include <unistd.h>

#include <exception>
#include <iostream>
#include <string>

#include "Print.h"
#include "ScriptedDongle.h"

namespace {

using namespace velmorindal;

/// Performs the orders on standard input, each confirmed by "done", until it is closed.
void performOrders(ScriptedDongle& dongle) {
    for (std::string order; std::getline(std::cin, order);) {
        dongle.perform(order);
        print("done");
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4) {
        writeLine(STDERR_FILENO, "Usage: velmorindal-scripted-dongle DIRECTORY NAME SILENCES_FILE");
        return 2;
    }
    try {
        ScriptedDongle dongle{arguments[1], arguments[2], arguments[3]};
        print(dongle.path().string());
        performOrders(dongle);
    } catch (const std::exception& error) {
        writeLine(STDERR_FILENO, std::string{"velmorindal-scripted-dongle: "} + error.what());
        return 1;
    }
    return 0;
}
