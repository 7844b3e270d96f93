#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmorindal {

/// A pseudo-terminal: the test holds the master and plays the device, the code under test opens path().
class FreshTerminal {
  public:
    /// A pseudo-terminal with the attributes that the system gives to a new one: echo and line editing on.
    FreshTerminal();
    FreshTerminal(const FreshTerminal&) = delete;
    FreshTerminal& operator=(const FreshTerminal&) = delete;
    ~FreshTerminal();

    const std::string& path() const { return path_; }

    /// What the device sends to the host.
    void send(std::span<const std::uint8_t> bytes) const;

    /// What the host has sent to the device: `count` bytes, or fewer when no more come for two minutes.
    std::vector<std::uint8_t> receive(std::size_t count) const;

    /// Takes the device away: its node vanishes.
    void unplug();

  private:
    int master_;
    std::string path_;
};

}  // namespace velmorindal
