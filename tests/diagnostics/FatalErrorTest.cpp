#include "FatalError.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(FatalErrorDeathTest, StopsTheProcessWithItsOneLine) {
    EXPECT_EXIT(fatalError("the cutoff does not fit"), testing::KilledBySignal(SIGABRT),
                "^the cutoff does not fit\n$");
}

}  // namespace
}  // namespace velmorindal
