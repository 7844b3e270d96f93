#include "VelmorindalError.h"

#include <gtest/gtest.h>

#include <exception>

namespace velmorindal {
namespace {

TEST(VelmorindalError, NamesItsCasesInOrderAndNothingElse) {
    EXPECT_EQ(caseName(static_cast<VelmorindalError>(0)), "NotImplementedError");
    EXPECT_EQ(caseName(static_cast<VelmorindalError>(1)), "InvalidMessageError");
    EXPECT_EQ(caseName(static_cast<VelmorindalError>(2)), "NoConnectionError");
    EXPECT_EQ(caseName(static_cast<VelmorindalError>(3)), "");
}

TEST(VelmorindalException, CarriesTheCaseAndItsName) {
    const VelmorindalException exception{VelmorindalError::NoConnectionError};
    EXPECT_EQ(exception.error, VelmorindalError::NoConnectionError);
    EXPECT_STREQ(static_cast<const std::exception&>(exception).what(), "NoConnectionError");
}

}  // namespace
}  // namespace velmorindal
