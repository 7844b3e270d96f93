#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

#include "PosixSystem.h"
#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

std::atomic<int> interruptions{0};

/// A pipe that is full, or one that is empty.
class InterruptedWaitTest : public testing::TestWithParam<System::Readiness> {
  public:
    ~InterruptedWaitTest() override {
        ::sigaction(SIGUSR1, &before_, nullptr);
        for (const int end : ends_) {
            ::close(end);
        }
    }

  protected:
    InterruptedWaitTest() {
        EXPECT_EQ(::pipe(ends_.data()), 0);
        if (forRoom()) {
            EXPECT_EQ(::fcntl(ends_[1], F_SETFL, O_NONBLOCK), 0);
            while (::write(ends_[1], block_.data(), block_.size()) > 0) {
            }
        }
        struct sigaction interrupting {};
        interrupting.sa_handler = [](int) { ++interruptions; };
        ::sigaction(SIGUSR1, &interrupting, &before_);
        interruptions = 0;
    }

    static bool forRoom() { return GetParam() == System::Readiness::toWrite; }
    int waitedFor() const { return ends_[forRoom() ? 1 : 0]; }
    void makeReady() {
        if (forRoom()) {
            EXPECT_GT(::read(ends_[0], block_.data(), block_.size()), 0);
        } else {
            EXPECT_EQ(::write(ends_[1], block_.data(), 1), 1);
        }
    }

  private:
    std::array<int, 2> ends_{};
    std::array<char, 4096> block_{};
    struct sigaction before_ {};
};

TEST_P(InterruptedWaitTest, GoesOnUntilTheLineIsReady) {
    PosixSystem system;
    std::atomic<bool> ended{false};
    std::atomic<bool> ready{false};
    std::thread waiting{[&] {
        ready = system.wait(waitedFor(), GetParam(), std::nullopt);
        ended = true;
    }};

    // Taken inside the wait or just before it; of several some are taken inside.
    for (int sent = 1; sent <= 20 && !ended; ++sent) {
        ::pthread_kill(waiting.native_handle(), SIGUSR1);
        EXPECT_TRUE(eventually([&] { return interruptions == sent || ended; }));
    }
    EXPECT_FALSE(ended);
    makeReady();
    waiting.join();

    EXPECT_TRUE(ready);
}

INSTANTIATE_TEST_SUITE_P(PosixSystem, InterruptedWaitTest,
                         testing::Values(System::Readiness::toRead, System::Readiness::toWrite),
                         [](const auto& test) {
                             return test.param == System::Readiness::toRead ? "ForBytes" : "ForRoom";
                         });

}  // namespace
}  // namespace velmorindal
