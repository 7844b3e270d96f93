#include "Choices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velmorindal {
namespace {

TEST(Choices, AreAllGoneThrough) {
    Choices choices;
    std::vector<std::string> schedules;
    do {
        const std::size_t first = choices.pick(2);
        schedules.push_back(std::to_string(first) + std::to_string(choices.pick(first == 0 ? 3 : 1)));
    } while (choices.advance());

    EXPECT_THAT(schedules, testing::ElementsAre("00", "01", "02", "10"));
}

}  // namespace
}  // namespace velmorindal
