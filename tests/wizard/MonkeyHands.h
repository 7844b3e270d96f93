#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <vector>

class QWidget;

namespace velmorindal {

/// Chooses and does what a person without a plan does to whatever window or dialog is on top.
class MonkeyHands {
  public:
    /// Files are loaded from and saved to `files`, which exists.
    MonkeyHands(std::mt19937_64& random, std::filesystem::path files);

    /// Does one thing to `window` or to the dialog over it. @returns it in words.
    std::string act(QWidget& window);

    std::size_t presses() const { return presses_; }

  private:
    std::size_t below(std::size_t count);
    bool oneIn(std::size_t count) { return below(count) == 0; }
    std::string pressSomething(QWidget& top);
    std::string answerFilePanel(QWidget& top);
    std::string typeSomething(QWidget& top);
    template <typename Control>
    std::vector<Control*> reachable(const QWidget& top) const;

    std::mt19937_64& random_;
    const std::filesystem::path files_;
    std::size_t presses_ = 0;
};

}  // namespace velmorindal
