// The wizard program, with the clock of a walk.

#include <cstdlib>

#include "Program.h"
#include "SilenceSystem.h"

int main(int argc, char** argv) {
    const char* const silences = std::getenv("VELMORINDAL_SILENCES");
    velmorindal::SilenceSystem system{silences != nullptr ? silences : ""};
    return velmorindal::runProgram(argc, argv, system);
}
