#include "QuitSignals.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <QTest>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>

namespace velmorindal {
namespace {

/// Sets what a signal does, whatever the tests were started with, until the end of the test.
class SignalAction {
  public:
    SignalAction(int signal, void (*action)(int)) : signal_{signal}, before_{std::signal(signal, action)} {}
    SignalAction(const SignalAction&) = delete;
    SignalAction& operator=(const SignalAction&) = delete;
    ~SignalAction() { std::signal(signal_, before_); }

  private:
    const int signal_;
    void (*const before_)(int);
};

TEST(QuitSignals, ASignalToEndReachesTheEventLoopAsOneCall) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const SignalAction action{signal, SIG_DFL};
        int calls = 0;
        const QuitSignals quitSignals{[&calls] { ++calls; }};

        ASSERT_EQ(std::raise(signal), 0);
        EXPECT_EQ(calls, 0);

        EXPECT_TRUE(QTest::qWaitFor([&calls] { return calls > 0; }, 600'000));
        EXPECT_EQ(calls, 1);
    }
}

TEST(QuitSignals, ASignalThatIsIgnoredStaysSo) {
    const auto action = [] {
        struct sigaction now {};
        ::sigaction(SIGHUP, nullptr, &now);
        return now.sa_handler;
    };
    const SignalAction ignored{SIGHUP, SIG_IGN};
    {
        const QuitSignals quitSignals{[] {}};
        EXPECT_EQ(action(), SIG_IGN);
    }
    EXPECT_EQ(action(), SIG_IGN);
}

/// The open descriptors of this process, by number.
std::set<int> descriptors() {
    std::set<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        numbers.insert(std::stoi(entry.path().filename().string()));
    }
    // Listing the directory opens a descriptor too, which is closed by now.
    std::erase_if(numbers, [](int number) { return ::fcntl(number, F_GETFD) == -1; });
    return numbers;
}

TEST(QuitSignals, ChildProgramsInheritNothingOfThem) {
    const std::set<int> before = descriptors();
    const QuitSignals quitSignals{[] {}};

    std::set<int> opened = descriptors();
    std::erase_if(opened, [&before](int number) { return before.contains(number); });

    EXPECT_GE(opened.size(), 2U);
    for (const int number : opened) {
        EXPECT_EQ(::fcntl(number, F_GETFD), FD_CLOEXEC) << number;
    }
}

}  // namespace
}  // namespace velmorindal
