#include "ScriptedLine.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <ctime>

#include "CapturedOutput.h"
#include "Requirement.h"
#include "support/TemporaryDirectory.h"

namespace velmorindal {
namespace {

ScriptedLine* current = nullptr;

/// The terminal, with a link to it in a directory of its own.
class Node {
  public:
    Node() {
        const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        std::array<char, 64> name{};
        require(master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0 &&
                    ::ptsname_r(master, name.data(), name.size()) == 0,
                "a pseudo-terminal can be made");
        terminal_ = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        std::filesystem::create_symlink(name.data(), link());
    }

    std::filesystem::path link() const { return directory_.path() / "cu.usbmodem-scripted"; }
    const std::filesystem::path& directory() const { return directory_.path(); }

    /// A port that was dropped and not closed leaves the terminal in exclusive mode.
    void endExclusiveUse() const { ::ioctl(terminal_, TIOCNXCL); }

  private:
    TemporaryDirectory directory_;
    int terminal_ = -1;
};

const Node& node() {
    static const Node theNode;
    return theNode;
}

int nextDescriptor() {
    const int next = ::dup(STDERR_FILENO);
    ::close(next);
    return next;
}

}  // namespace

ScriptedLine::ScriptedLine(const Script& script) : script_{script} {
    node();
    firstFreeDescriptor_ = nextDescriptor();
    current = this;
    replaceWrites([](const void* bytes, std::size_t size) {
        return current->write({static_cast<const std::uint8_t*>(bytes), size});
    });
}

ScriptedLine::~ScriptedLine() {
    replaceWrites(nullptr);
    current = nullptr;
    ::close_range(static_cast<unsigned>(firstFreeDescriptor_), UINT_MAX, 0);
    node().endExclusiveUse();
}

std::string ScriptedLine::directory() {
    return node().directory().string();
}

std::string ScriptedLine::path() {
    return node().link().string();
}

std::ptrdiff_t ScriptedLine::read(std::span<std::uint8_t> buffer) {
    const std::size_t piece = script_.pieceSize == 0 ? buffer.size() : script_.pieceSize;
    const std::size_t length = std::min({piece, buffer.size(), script_.bytes.size() - position_});
    std::ranges::copy(script_.bytes.subspan(position_, length), buffer.begin());
    position_ += length;
    return static_cast<std::ptrdiff_t>(length);
}

std::ptrdiff_t ScriptedLine::write(std::span<const std::uint8_t> bytes) {
    writes_.emplace_back(bytes.begin(), bytes.end());
    const bool faulty = writes_.size() == script_.faultyWrite;
    const auto length = static_cast<std::ptrdiff_t>(bytes.size());
    return faulty ? std::min(script_.faultyResult, length) : length;
}

}  // namespace velmorindal

// These three stand before the system's own for the whole program.

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size) {
    if (descriptor > STDERR_FILENO && velmorindal::current != nullptr) {
        return velmorindal::current->read({static_cast<std::uint8_t*>(buffer), size});
    }
    return ::syscall(SYS_read, descriptor, buffer, size);
}

extern "C" int fstat(int descriptor, struct stat* status) noexcept {
    const int result = ::fstatat(descriptor, "", status, AT_EMPTY_PATH);
    if (result == 0 && velmorindal::current != nullptr && velmorindal::current->isPulledOut()) {
        status->st_nlink = 0;
    }
    return result;
}

/// No deadline passes, however long a busy machine keeps the process waiting.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    if (clock == CLOCK_MONOTONIC && velmorindal::current != nullptr) {
        *now = {};
        return 0;
    }
    return static_cast<int>(::syscall(SYS_clock_gettime, clock, now));
}
