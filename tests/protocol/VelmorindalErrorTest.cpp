#include "VelmorindalError.h"

#include <gtest/gtest.h>

#include <exception>

namespace velmorindal {
namespace {

TEST(VelmorindalError, NumbersItsCasesInOrder) {
    EXPECT_EQ(static_cast<int>(VelmorindalError::NotImplementedError), 0);
    EXPECT_EQ(static_cast<int>(VelmorindalError::InvalidMessageError), 1);
    EXPECT_EQ(static_cast<int>(VelmorindalError::NoConnectionError), 2);
}

TEST(VelmorindalError, NamesEachCase) {
    EXPECT_EQ(caseName(VelmorindalError::NotImplementedError), "NotImplementedError");
    EXPECT_EQ(caseName(VelmorindalError::InvalidMessageError), "InvalidMessageError");
    EXPECT_EQ(caseName(VelmorindalError::NoConnectionError), "NoConnectionError");
}

TEST(VelmorindalError, NamesNothingOutsideItsCases) {
    EXPECT_EQ(caseName(static_cast<VelmorindalError>(3)), "");
}

TEST(VelmorindalException, CarriesTheCaseAndItsName) {
    const VelmorindalException exception{VelmorindalError::NoConnectionError};
    EXPECT_EQ(exception.error, VelmorindalError::NoConnectionError);
    EXPECT_STREQ(static_cast<const std::exception&>(exception).what(), "NoConnectionError");
}

}  // namespace
}  // namespace velmorindal
