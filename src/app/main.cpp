#include "PosixSystem.h"
#include "Program.h"

int main(int argc, char** argv) {
    velmorindal::PosixSystem system;
    return velmorindal::runProgram(argc, argv, system);
}
