#include "ButtonOptions.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace velmorindal {
namespace {

TEST(ButtonOptions, EachButtonHasItsBitInASigned64BitValue) {
    static_assert(std::is_same_v<decltype(ButtonOptions::rawValue), std::int64_t>);
    EXPECT_EQ(ButtonOptions::None.rawValue, 0);
    EXPECT_EQ(ButtonOptions::Cancel.rawValue, 1);
    EXPECT_EQ(ButtonOptions::Back.rawValue, 2);
    EXPECT_EQ(ButtonOptions::Next.rawValue, 4);
    EXPECT_EQ(ButtonOptions::Save.rawValue, 8);
    EXPECT_EQ(ButtonOptions::Close.rawValue, 16);
}

TEST(ButtonOptions, ASetContainsWhatItWasJoinedFromAndNothingElse) {
    const ButtonOptions set = ButtonOptions::Cancel | ButtonOptions::Next;

    EXPECT_EQ(set.rawValue, 5);
    EXPECT_TRUE(set.contains(ButtonOptions::Cancel));
    EXPECT_TRUE(set.contains(ButtonOptions::Next));
    EXPECT_TRUE(set.contains(set));
    EXPECT_FALSE(set.contains(ButtonOptions::Back));
    EXPECT_FALSE(set.contains(ButtonOptions::Cancel | ButtonOptions::Back));
}

TEST(ButtonOptions, SetsAreEqualWhenTheirButtonsAre) {
    EXPECT_EQ(ButtonOptions::Back | ButtonOptions::Close, ButtonOptions::Close | ButtonOptions::Back);
    EXPECT_EQ(ButtonOptions::Save | ButtonOptions::None, ButtonOptions::Save);
    EXPECT_NE(ButtonOptions::Back, ButtonOptions::Next);
}

}  // namespace
}  // namespace velmorindal
