#pragma once

#include <string>

#include "TemporaryDirectory.h"

namespace velmorindal {

/// Takes standard output into a file while it lives.
class PrintedLog {
  public:
    PrintedLog();
    PrintedLog(const PrintedLog&) = delete;
    PrintedLog& operator=(const PrintedLog&) = delete;
    /// Gives standard output back.
    ~PrintedLog();

    /// Forgets what was printed so far.
    void clear() const;
    /// Everything since then.
    std::string text() const;

  private:
    TemporaryDirectory directory_;
    int file_ = -1;
    int before_ = -1;
};

}  // namespace velmorindal
