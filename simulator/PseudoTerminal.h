#pragma once

#include <filesystem>
#include <string>

#include "OwnedDescriptor.h"

namespace velmorindal {

/// A pseudo-terminal in raw mode without echo, and a link by which a host finds it. Not safe from several
/// threads.
class PseudoTerminal {
  public:
    /// @throws std::system_error naming what failed; nothing is left behind then, and whatever had the link's
    ///         name keeps it.
    explicit PseudoTerminal(std::filesystem::path link);
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    ~PseudoTerminal() { close(); }

    const std::filesystem::path& link() const { return link_; }
    /// The end opposite to the host's, non-blocking.
    int descriptor() const { return master_.get(); }
    /// The descriptor by which the port is kept open here, so that the master does not see a hang-up when a
    /// host closes it.
    int ownHostEnd() const { return slave_.get(); }
    /// The port itself, which the link points to.
    const std::string& hostEnd() const { return hostEnd_; }
    /// Whether the host has read every byte that was written to `descriptor()`.
    bool hostHasTakenAll() const;
    /// Ends the exclusive mode (TIOCEXCL) and drops what was not read: what the system itself does when the
    /// last host closes a port, but not for one that is kept open here. Does nothing while a host holds the
    /// port's lock (flock).
    void forgetHost();
    /// Removes the link, if it is still the one that was made here, then hangs up: for a host that has the
    /// port open its link count becomes 0 and reads end. Once is enough.
    void close();

  private:
    std::filesystem::path link_;
    OwnedDescriptor master_;
    std::string hostEnd_;
    OwnedDescriptor slave_;
};

}  // namespace velmorindal
