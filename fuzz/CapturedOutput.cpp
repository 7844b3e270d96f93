#include "CapturedOutput.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

namespace velmorindal {
namespace {

bool capturing = false;
ReplacedWrite replacedWrite = nullptr;

std::string& captured() {
    static std::string text;
    return text;
}

}  // namespace

CapturedOutput::CapturedOutput() {
    captured().clear();
    capturing = true;
}

CapturedOutput::~CapturedOutput() {
    capturing = false;
}

std::string CapturedOutput::take() {
    return std::exchange(captured(), {});
}

void replaceWrites(ReplacedWrite replacement) {
    replacedWrite = replacement;
}

}  // namespace velmorindal

// Stands before the system's own for the whole program.
extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    if (descriptor == STDOUT_FILENO && velmorindal::capturing) {
        velmorindal::captured().append(static_cast<const char*>(bytes), size);
        return static_cast<ssize_t>(size);
    }
    if (descriptor > STDERR_FILENO && velmorindal::replacedWrite != nullptr) {
        return velmorindal::replacedWrite(bytes, size);
    }
    return ::syscall(SYS_write, descriptor, bytes, size);
}
