#include "Choices.h"

#include <algorithm>

namespace velmorindal {

Choices::Choices(const std::vector<std::size_t>& first) {
    for (const std::size_t answer : first) {
        choices_.push_back({.answer = answer, .count = answer + 1});
    }
}

std::size_t Choices::pick(std::size_t count) {
    if (count < 2) {
        return 0;
    }
    if (position_ == choices_.size()) {
        choices_.emplace_back();
    }
    Choice& choice = choices_[position_++];
    choice.count = count;
    return std::min(choice.answer, count - 1);
}

bool Choices::advance() {
    choices_.resize(position_);
    position_ = 0;
    while (!choices_.empty() && choices_.back().answer + 1 == choices_.back().count) {
        choices_.pop_back();
    }
    if (choices_.empty()) {
        return false;
    }
    ++choices_.back().answer;
    return true;
}

std::vector<std::size_t> Choices::taken() const {
    std::vector<std::size_t> answers;
    for (std::size_t index = 0; index < position_; ++index) {
        answers.push_back(choices_[index].answer);
    }
    while (!answers.empty() && answers.back() == 0) {
        answers.pop_back();
    }
    return answers;
}

std::string listText(const std::vector<std::size_t>& answers) {
    std::string text = "{";
    for (const std::size_t answer : answers) {
        text += (text.size() > 1 ? ", " : "") + std::to_string(answer);
    }
    return text + "}";
}

}  // namespace velmorindal
