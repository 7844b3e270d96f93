#include "Print.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "OtherLocales.h"

namespace velmorindal {
namespace {

enum class Weather { sunny, rainy };

std::string_view caseName(Weather weather) {
    return weather == Weather::sunny ? "sunny" : "rainy";
}

template <typename... Items>
std::string printed(const Items&... items) {
    testing::internal::CaptureStdout();
    print(items...);
    return testing::internal::GetCapturedStdout();
}

TEST(Print, JoinsItemsByOneSpaceSoThatBlanksInTextsAddUp) {
    EXPECT_EQ(printed("Header length was ", 3, " and I expected at least ", 4),
              "Header length was  3  and I expected at least  4\n");
}

TEST(Print, WritesNothingButANewlineForAnEmptyText) {
    EXPECT_EQ(printed(""), "\n");
}

TEST(Print, WritesAByteAsANumber) {
    EXPECT_EQ(printed(std::uint8_t{0x63}, std::uint16_t{300}, -1), "99 300 -1\n");
}

TEST(Print, WritesBooleansAsWords) {
    EXPECT_EQ(printed(true, false), "true false\n");
}

TEST(Print, WritesAnEnumerationByItsCaseName) {
    EXPECT_EQ(printed("It is", Weather::rainy), "It is rainy\n");
}

TEST(Print, WritesAListInBracketsWithItsTextsQuoted) {
    EXPECT_EQ(printed(std::vector<std::string>{"a", "b"}), "[\"a\", \"b\"]\n");
    EXPECT_EQ(printed(std::vector<std::string>{}), "[]\n");
    EXPECT_EQ(printed(std::vector<std::string>{"a\"\\\n"}), "[\"a\\\"\\\\\\x0a\"]\n");
    EXPECT_EQ(printed(std::vector<std::string>{"~\x7F"}), "[\"~\\x7f\"]\n");
}

TEST(Print, WritesFloatingPointNumbersInTheShortestFormThatReadsBack) {
    EXPECT_EQ(printed(1.0, 0.0, -0.0, 25.0), "1.0 0.0 -0.0 25.0\n");
    EXPECT_EQ(printed(0.37F), "0.37\n");
    EXPECT_EQ(printed(static_cast<double>(0.37F)), "0.3700000047683716\n");
    EXPECT_EQ(printed(100000.0, 123456789.5), "100000.0 123456789.5\n");
    EXPECT_EQ(printed(1e16, 1e-5), "1e+16 1e-05\n");
    EXPECT_EQ(printed(1e-4), "0.0001\n");
    EXPECT_EQ(printed(std::numeric_limits<double>::infinity()), "inf\n");
}

TEST(Print, IgnoresTheLocale) {
    inOtherLocales([](const char* locale) { EXPECT_EQ(printed(1.5, 1234567), "1.5 1234567\n") << locale; });
}

TEST(Print, LetsOnlyTheThreadThatHoldsTheLockPrint) {
    testing::internal::CaptureStdout();
    std::thread other;
    {
        const PrintLock printLock;
        std::atomic<bool> begun = false;
        other = std::thread{[&begun] {
            begun = true;
            begun.notify_all();
            print("too late");
        }};
        begun.wait(false);
        print("the");
        print("last");
    }
    other.join();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "the\nlast\ntoo late\n");
}

TEST(Print, DropsWhatNobodyReadsInsteadOfWaitingForever) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const auto start = std::chrono::steady_clock::now();
    const std::string line(1000, 'x');
    // Far more than a pipe holds.
    for (int lines = 0; lines < 1000; ++lines) {
        writeLine(ends[1], line);
    }
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds{1});
    // What the other stream takes gives this one no more time.
    testing::internal::CaptureStderr();
    for (int lines = 0; lines < 400; ++lines) {
        writeLine(STDERR_FILENO, "");
        writeLine(ends[1], line);
    }
    testing::internal::GetCapturedStderr();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes{5});

    std::string received(1'000'000, '\0');
    ASSERT_EQ(::fcntl(ends[0], F_SETFL, O_NONBLOCK), 0);
    while (::read(ends[0], received.data(), received.size()) > 0) {
    }
    writeLine(ends[1], "room again");
    const auto count = ::read(ends[0], received.data(), received.size());
    EXPECT_EQ(received.substr(0, static_cast<std::size_t>(count)), "room again\n");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(Print, WritesALineThatIsLongerThanAPipeTakesAtOnce) {
    const std::string line(20'000, 'x');
    EXPECT_EQ(printed(line), line + "\n");
}

TEST(Print, WritesAWarningToStandardErrorAlone) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    warn("trouble", 1, 2.5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "trouble 1 2.5\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Print, DivertsOneStreamAndNotTheOther) {
    std::string lines;
    testing::internal::CaptureStdout();
    {
        const PrintDiversion diversion{[&lines](std::string_view line) { lines += line; },
                                       PrintStream::standardError};
        print("output");
        warn("trouble");
    }
    EXPECT_EQ(lines, "trouble\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "output\n");
}

TEST(Print, GivesAStreamBackAtTheEndOfADiversion) {
    std::string outer;
    testing::internal::CaptureStderr();
    {
        const PrintDiversion diversion{[&outer](std::string_view line) { outer += line; },
                                       PrintStream::standardError};
        {
            const PrintDiversion inner{[](std::string_view /*line*/) {}, PrintStream::standardError};
            warn("first");
        }
        warn("second");
    }
    warn("third");
    EXPECT_EQ(outer, "second\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "third\n");
}

TEST(Print, KeepsTheLinesOfTwoThreadsWhole) {
    testing::internal::CaptureStdout();
    const auto write = [](const char* text) {
        for (int line = 0; line < 500; ++line) {
            print(text, line % 2 == 0);
        }
    };
    std::thread first{write, "one thread writes"};
    std::thread second{write, "and another writes"};
    first.join();
    second.join();
    const std::string output = testing::internal::GetCapturedStdout();
    std::size_t lines = 0;
    for (std::size_t start = 0; start < output.size();) {
        const std::size_t end = output.find('\n', start);
        ASSERT_NE(end, std::string::npos);
        const std::string line = output.substr(start, end - start);
        EXPECT_TRUE(line == "one thread writes true" || line == "one thread writes false" ||
                    line == "and another writes true" || line == "and another writes false")
            << line;
        ++lines;
        start = end + 1;
    }
    EXPECT_EQ(lines, 1000U);
}

}  // namespace
}  // namespace velmorindal
