#pragma once

#include <string>

#include "SessionTest.h"

namespace velmorindal {

/// A model that has not connected yet.
class ConnectionTest : public SessionTest {
  protected:
    std::string path() const { return dongle.path().string(); }

    void expectFailure(const std::string& text) {
        EXPECT_FALSE(connect());
        EXPECT_EQ(velmorindal.lastError.get(), text);
        EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
        EXPECT_FALSE(velmorindal.isValid);
    }
};

}  // namespace velmorindal
