#pragma once

#include <regex>
#include <string>

#include "SessionTest.h"

namespace velmorindal {

/// Descriptors differ from run to run.
inline std::string withoutDescriptors(const std::string& lines) {
    return std::regex_replace(lines, std::regex{"Open Result:  \\d+"}, "Open Result:  N");
}

/// A model that has not connected yet.
class ConnectionTest : public SessionTest {
  protected:
    std::string path() const { return dongle.path().string(); }

    void expectFailure(const std::string& text, ConnectionStatus state = ConnectionStatus::error) {
        EXPECT_FALSE(connect());
        EXPECT_EQ(velmorindal.lastError.get(), text);
        EXPECT_EQ(velmorindal.connectionState.get(), state);
        EXPECT_FALSE(velmorindal.isValid);
    }
};

}  // namespace velmorindal
