#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Mutex.h"
#include "Print.h"

namespace velmorindal {

/// What the program prints while it lives. The test's output, including its failures, is not affected.
class PrintedLines {
  public:
    explicit PrintedLines(PrintStream stream = PrintStream::standardOutput)
        : diversion_{[this](std::string_view line) {
                         const Lock lock{mutex_};
                         text_ += line;
                     },
                     stream} {}
    PrintedLines(const PrintedLines&) = delete;
    PrintedLines& operator=(const PrintedLines&) = delete;

    /// All that was printed since the construction or the last call.
    std::string take() {
        const Lock lock{mutex_};
        return std::exchange(text_, {});
    }

  private:
    Mutex mutex_;
    std::string text_ GUARDED_BY(mutex_);
    PrintDiversion diversion_;
};

}  // namespace velmorindal
