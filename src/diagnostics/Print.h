#pragma once

#include <array>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "Mutex.h"

namespace velmorindal {

/// One item of a diagnostic line, already converted to text. The conversions do not depend on the locale.
class PrintItem {
  public:
    // Implicit on purpose: call sites list plain values.
    PrintItem(std::string_view text) : text_{text} {}
    PrintItem(const char* text) : text_{text} {}
    PrintItem(std::string text) : text_{std::move(text)} {}
    /// "true" or "false".
    PrintItem(std::same_as<bool> auto value) : text_{value ? "true" : "false"} {}
    /// Decimal; a byte is a number, not a character.
    template <std::integral Integer>
    requires(!std::same_as<Integer, bool>) PrintItem(Integer value) : text_{std::to_string(value)} {}
    /// The shortest decimal form that reads back to the same value, with ".0" when integral.
    PrintItem(float value);
    PrintItem(double value);
    /// The case's name, found by a `caseName(value)` beside the enumeration.
    template <typename Enumeration>
    requires std::is_enum_v<Enumeration> PrintItem(Enumeration value) : text_{caseName(value)} {}
    /// `["a", "b"]`, quotes, backslashes and control characters escaped.
    PrintItem(const std::vector<std::string>& list);

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// Writes `text` and a newline to `descriptor`, in one write unless the system takes only a part of it or it
/// is longer than a pipe takes at once (PIPE_BUF). A descriptor that cannot be written is ignored. If there
/// is no room for a second, the rest of the text is dropped, and so are all later texts for that stream until
/// there is room again: diagnostics never stop the program. Safe from any thread.
void writeLine(int descriptor, std::string_view text);

enum class PrintStream { standardOutput, standardError };

/// Writes the items, joined by one space, and a newline to `stream`, as writeLine() does. Lines of different
/// threads do not mix. Safe from any thread.
void printItems(PrintStream stream, std::span<const PrintItem> items);

/// While one exists, only the thread that created it prints; other threads wait before they print.
class PrintLock {
  public:
    PrintLock();

  private:
    RecursiveLock lock_;
};

/// While one exists, the lines printed to one of the streams go to `sink` instead. A later one for the same
/// stream overrides an earlier one until it is destroyed.
class PrintDiversion {
  public:
    /// @param sink called with each line, its newline included, on the thread that prints it; for one line at
    ///        a time.
    explicit PrintDiversion(std::function<void(std::string_view line)> sink,
                            PrintStream stream = PrintStream::standardOutput);
    PrintDiversion(const PrintDiversion&) = delete;
    PrintDiversion& operator=(const PrintDiversion&) = delete;
    ~PrintDiversion();

  private:
    const PrintStream stream_;
    std::function<void(std::string_view line)> earlier_;
};

/// Reports progress: a line on standard output.
template <typename... Items>
void print(const Items&... items) {
    printItems(PrintStream::standardOutput, std::array<PrintItem, sizeof...(Items)>{PrintItem(items)...});
}

/// Reports what went wrong and what a person can do about it: a line on standard error.
template <typename... Items>
void warn(const Items&... items) {
    printItems(PrintStream::standardError, std::array<PrintItem, sizeof...(Items)>{PrintItem(items)...});
}

}  // namespace velmorindal
