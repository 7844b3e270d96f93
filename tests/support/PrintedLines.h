#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "Print.h"

namespace velmorindal {

/// What the program prints while it lives. A test's own output, its failures among it, goes its way.
class PrintedLines {
  public:
    explicit PrintedLines(PrintStream stream = PrintStream::standardOutput)
        : diversion_{[this](std::string_view line) {
                         const std::lock_guard lock{mutex_};
                         text_ += line;
                     },
                     stream} {}
    PrintedLines(const PrintedLines&) = delete;
    PrintedLines& operator=(const PrintedLines&) = delete;

    /// All that was printed since the construction or the last call.
    std::string take() {
        const std::lock_guard lock{mutex_};
        return std::exchange(text_, {});
    }

  private:
    std::mutex mutex_;
    std::string text_;
    PrintDiversion diversion_;
};

}  // namespace velmorindal
