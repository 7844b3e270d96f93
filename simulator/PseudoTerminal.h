#pragma once

#include <filesystem>
#include <string>

#include "OwnedDescriptor.h"

namespace velmorindal {

/// A pseudo-terminal in raw mode without echo, and a link to it for hosts. Not safe from several threads.
class PseudoTerminal {
  public:
    /// @throws std::system_error saying what failed. Nothing is left behind then, and an existing file with
    ///         the name of the link stays.
    explicit PseudoTerminal(std::filesystem::path link);
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal() { close(); }

    const std::filesystem::path& link() const { return link_; }
    /// The device's end, non-blocking.
    int descriptor() const { return master_.get(); }
    /// The path of the port itself, to which the link points.
    const std::string& hostEnd() const { return hostEnd_; }
    /// Whether the host has read every byte that was written to `descriptor()`.
    bool hostHasTakenAll() const;
    /// Ends the exclusive mode (TIOCEXCL) and drops unread bytes. The system does that when the last host
    /// closes a port, but this one is kept open here. Does nothing while a host holds the port's
    /// lock (flock).
    void forgetHost();
    /// Removes the link, if it still points here, then hangs up: a host that has the port open sees a link
    /// count of 0, and its reads end. Safe to repeat.
    void close();

  private:
    std::filesystem::path link_;
    OwnedDescriptor master_;
    std::string hostEnd_;
    /// Kept open, so that the device's end gets no hang-up when a host closes the port.
    OwnedDescriptor slave_;
};

}  // namespace velmorindal
