#include "Reason.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(Reason, ADialogsTextBecomesOneParagraph) {
    EXPECT_EQ(asReason("Invalid.\n\n(Error code: VC/TC)\nTwice."), "Invalid. (Error code: VC/TC) Twice.");
    EXPECT_EQ(asReason(""), "");
}

}  // namespace
}  // namespace velmorindal
