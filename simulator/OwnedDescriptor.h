#pragma once

#include <unistd.h>

#include <utility>

namespace velmorindal {

/// A file descriptor that is closed by the destructor.
class OwnedDescriptor {
  public:
    OwnedDescriptor() = default;
    explicit OwnedDescriptor(int descriptor) : descriptor_{descriptor} {}
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : descriptor_{std::exchange(other.descriptor_, -1)} {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
    ~OwnedDescriptor() { close(); }

    /// The descriptor; -1 if there is none.
    int get() const { return descriptor_; }

    void close() {
        if (descriptor_ >= 0) {
            ::close(std::exchange(descriptor_, -1));
        }
    }

  private:
    int descriptor_ = -1;
};

}  // namespace velmorindal
