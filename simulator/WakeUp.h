#pragma once

#include "OwnedDescriptor.h"

namespace velmorindal {

/// Ends the wait of a thread that polls `descriptor()` for reading.
class WakeUp {
  public:
    /// @throws std::system_error when the system has no descriptors left.
    WakeUp();

    int descriptor() const { return reader_.get(); }
    /// From any thread; once or often is the same.
    void raise() const;
    /// By the thread that was woken.
    void clear() const;

  private:
    OwnedDescriptor reader_;
    OwnedDescriptor writer_;
};

}  // namespace velmorindal
