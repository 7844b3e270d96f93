#pragma once

#include "OwnedDescriptor.h"

namespace velmorindal {

/// Ends the wait of a thread that polls `descriptor()` for reading.
class WakeUp {
  public:
    /// @throws std::system_error when the system refuses a pipe.
    WakeUp();

    int descriptor() const { return reader_.get(); }
    /// From any thread. Several calls before a clear() have the same effect as one.
    void raise() const;
    /// Makes the next wait block again. Call it from the thread that was woken.
    void clear() const;

  private:
    OwnedDescriptor reader_;
    OwnedDescriptor writer_;
};

}  // namespace velmorindal
