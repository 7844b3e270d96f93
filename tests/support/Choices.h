#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmorindal {

/// The choices that one schedule is made of, and the way from one schedule to the next: all of them, depth
/// first. A program that asks the same questions after the same answers is gone through completely.
class Choices {
  public:
    /// Begins with the schedule that answers as `first` and then 0 to everything.
    explicit Choices(const std::vector<std::size_t>& first = {});

    /// An answer from 0 to `count` - 1. A question with one answer is none.
    std::size_t pick(std::size_t count);

    /// Goes on to the next schedule. @returns false when there is none left.
    bool advance();

    /// What was answered so far, without the zeros at the end: enough to come here again.
    std::vector<std::size_t> taken() const;

  private:
    struct Choice {
        std::size_t answer = 0;
        std::size_t count = 0;
    };

    std::vector<Choice> choices_;
    std::size_t position_ = 0;
};

/// As a list that can be given back to Choices: "{0, 2, 1}".
std::string listText(const std::vector<std::size_t>& answers);

}  // namespace velmorindal
