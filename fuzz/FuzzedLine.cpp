#include "FuzzedLine.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

constexpr int descriptorOfAll = 100;

/// A directory in which the dongle is alone. The link points to a character device, since the search checks
/// the kind of a node.
class Node {
  public:
    Node() { std::filesystem::create_symlink("/dev/null", link()); }

    std::filesystem::path link() const { return directory_.path() / "cu.usbmodem-scripted"; }
    const std::filesystem::path& directory() const { return directory_.path(); }

  private:
    TemporaryDirectory directory_;
};

const Node& node() {
    static const Node theNode;
    return theNode;
}

}  // namespace

std::string FuzzedLine::directory() {
    return node().directory().string();
}

std::string FuzzedLine::path() {
    return node().link().string();
}

int FuzzedLine::openExclusively(const std::string& /*path*/, int /*accessMode*/,
                                const std::function<void()>& /*whenSlow*/) {
    return descriptorOfAll;
}

std::ptrdiff_t FuzzedLine::read(int /*descriptor*/, std::span<std::uint8_t> buffer) {
    const std::size_t piece = script_.pieceSize == 0 ? buffer.size() : script_.pieceSize;
    const std::size_t length = std::min({piece, buffer.size(), script_.bytes.size() - position_});
    std::ranges::copy(script_.bytes.subspan(position_, length), buffer.begin());
    position_ += length;
    return static_cast<std::ptrdiff_t>(length);
}

std::ptrdiff_t FuzzedLine::write(int /*descriptor*/, std::span<const std::uint8_t> bytes) {
    writes_.emplace_back(bytes.begin(), bytes.end());
    const auto length = static_cast<std::ptrdiff_t>(bytes.size());
    if (writes_.size() != script_.faultyWrite || script_.faultyResult >= length) {
        return length;
    }
    if (script_.faultyResult < 0) {
        errno = EIO;
        return -1;
    }
    isFull_ = true;
    return script_.faultyResult;
}

bool FuzzedLine::wait(int /*descriptor*/, Readiness readiness, std::optional<Clock::time_point> /*until*/) {
    if (readiness == Readiness::toRead || !std::exchange(isFull_, false)) {
        return true;
    }
    now_ += std::chrono::hours{1};
    return false;
}

std::optional<std::size_t> FuzzedLine::linkCount(int /*descriptor*/) {
    return isPulledOut() ? 0U : 1U;
}

bool FuzzedLine::lineAttributes(int /*descriptor*/, termios& attributes) {
    attributes = {};
    return true;
}

}  // namespace velmorindal
