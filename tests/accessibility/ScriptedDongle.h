#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Mutex.h"
#include "VelmorindalMessageType.h"
#include "VirtualDongle.h"

namespace velmorindal {

/// A dongle that a program in another language directs, one order a line:
///
///     next TYPE FAULT    the next frame of that type meets the fault: silent, refused, invalid, pulled-out
///     hold TYPE          the answer to the next one waits; "held" is printed when it does
///     release            the answer that waits is sent, or will not have to wait
///     forget             the answer that waits is not sent
///     link 0|1           whether the device is reached
///     detect-mode BYTE   what the device answers
///     hum TICKS          the device has heard a hum
///     clarity VALUE      what its reports carry from now on
///     pull-out           it is gone
///     stored             prints what the device has stored
///
/// Prints each frame that it receives in hexadecimal digits after the word "received". Adds a byte to the
/// file of silences for each frame that is not going to be answered any more, for SilenceSystem.
class ScriptedDongle {
  public:
    ScriptedDongle(const std::filesystem::path& directory, const std::string& name,
                   std::filesystem::path silences);

    const std::filesystem::path& path() const { return dongle_.path(); }

    /// @throws std::invalid_argument for an order that it does not know.
    void perform(const std::string& line);

  private:
    Fault faultNamed(const std::string& name) const;
    void noteSilence() const;
    void hold(VelmorindalMessageType type);
    void release();
    void forget();
    /// What is held, and is so no longer.
    std::optional<ByteBuffer> takeHeld();

    const std::filesystem::path silences_;
    Mutex mutex_;
    bool holds_ GUARDED_BY(mutex_) = false;
    std::optional<ByteBuffer> held_ GUARDED_BY(mutex_);
    VirtualDongle dongle_;  // last: its thread uses the above
};

}  // namespace velmorindal
