#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "InProcessDongle.h"
#include "RawHost.h"
#include "TemporaryDirectory.h"
#include "VirtualWorld.h"

namespace velmorindal {

/// A RawHost of a virtual system: its patience is virtual, and it takes what has arrived at the moment at
/// which it arrives.
class VirtualHost {
  public:
    VirtualHost(VirtualSystem& system, const std::filesystem::path& port)
        : system_{system}, descriptor_{system.openExclusively(port, 0, {})} {}
    VirtualHost(const VirtualHost&) = delete;
    VirtualHost& operator=(const VirtualHost&) = delete;
    ~VirtualHost() { system_.close(descriptor_); }

    void write(std::span<const std::uint8_t> bytes) {
        EXPECT_EQ(system_.write(descriptor_, bytes), std::ssize(bytes));
    }
    ByteBuffer read(std::size_t length) {
        const auto deadline = system_.now() + RawHost::patience;
        ByteBuffer bytes(length);
        std::size_t count = 0;
        while (count < length && system_.wait(descriptor_, System::Readiness::toRead, deadline)) {
            const auto more = system_.read(descriptor_, std::span{bytes}.subspan(count));
            if (more <= 0) {
                break;
            }
            count += static_cast<std::size_t>(more);
        }
        bytes.resize(count);
        return bytes;
    }
    ByteBuffer ask(const ByteBuffer& request, std::size_t answerLength) {
        write(request);
        return read(answerLength);
    }

  private:
    VirtualSystem& system_;
    const int descriptor_;
};

/// A dongle in this process, and a host without a protocol.
class VirtualDongleTest : public testing::Test, protected VirtualWorld {
  protected:
    TemporaryDirectory directory_;
    InProcessDongle dongle_{system, directory_.path()};
    VirtualHost host_{system, dongle_.path()};
};

}  // namespace velmorindal
