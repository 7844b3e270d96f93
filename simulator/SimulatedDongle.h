#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "DeviceState.h"
#include "Fault.h"
#include "FaultScript.h"
#include "Mutex.h"
#include "OutgoingLine.h"
#include "SimulatedDevice.h"
#include "VelmorindalCommand.h"
#include "VelmorindalMessageType.h"
#include "WireFrame.h"

namespace velmorindal {

/// A dongle and its device without the wire: what arrives, what goes out and when, and the operations for
/// tests. A derived class transports the bytes.
///
/// Queries are answered from the device's state. Commands take effect and are acknowledged by their own bytes
/// as a response. The order to store keeps a copy of the settings; a reset restores that copy, or the initial
/// settings if nothing was stored. The last hum is reported once. Reports are streamed from the
/// acknowledgement of auto-tune channel 2 to that of another channel. A frame of an unknown type or with a
/// payload of the wrong length is answered by an error frame ('e') of its type without payload, and has no
/// effect. Bytes that cannot start a command are skipped one by one.
///
/// For example:
///
///     dongle.staySilentOn(VelmorindalMessageType::status);
///     dongle.onFirst(VelmorindalMessageType::version, Fault::halfAHeader());
///     dongle.onOccurrence(2, VelmorindalMessageType::outputPath, Fault::late());
///     dongle.onEvery(VelmorindalMessageType::autoTune, Fault::silence().stillApplied());
///     dongle.onReport(3, Fault::wrongMarker());
///
/// Occurrences count the received frames of one type, queries and commands, from 1. A fault for one
/// occurrence overrides the fault for all; later calls override earlier ones.
///
/// All operations are safe from any thread, also from the hook of `whenReceived`.
class SimulatedDongle {
  public:
    struct Options {
        /// The name of the link in the directory.
        std::string name = "cu.usbmodem-simulated";
        /// The initial state of the device.
        DeviceState device = {};
        /// Whether bytes are sent at the speed of a 115200-baud line with 8 data bits, no parity and one stop
        /// bit: 11520 bytes a second.
        bool paced = false;
        /// Whether the device hums, with varying clarity and length. The same seed gives the same hums.
        bool hums = false;
        std::uint32_t seed = 1;
        /// The time between two streamed reports. With zero, only `sendReport` sends reports.
        std::chrono::microseconds reportInterval{50'000};
        /// Whether received frames are kept. Off for a dongle that serves for hours.
        bool keepsReceivedFrames = true;
        /// How long a dongle that is unplugged after an answer waits for the host to read it.
        std::chrono::milliseconds waitForTheHost{1000};
    };

    SimulatedDongle(const SimulatedDongle&) = delete;
    SimulatedDongle& operator=(const SimulatedDongle&) = delete;
    virtual ~SimulatedDongle() = default;

    /// The path that a host opens.
    const std::filesystem::path& path() const { return path_; }

    /// Removes the dongle: a host that has it open sees a link count of 0, and its reads end at once. It is
    /// removed when this returns; when called from the hook, right after the hook. Safe to repeat.
    virtual void unplug() = 0;
    bool isPlugged() const;

    // The device.

    DeviceState state() const;
    /// Changes the state of the device by `change`, in one step. `change` must not call the dongle.
    void prepare(const std::function<void(DeviceState&)>& change);
    /// The device has just detected a hum of `ticks`, 40 ms each.
    void humOnce(std::uint16_t ticks);
    /// From now on streamed reports carry this clarity (0.05 until then), whether the device hums or not.
    void reportClarity(float maximum, float minimum = 0.0F);
    /// The next reports carry these clarities, one each; later ones are as before.
    void reportClarities(const std::vector<float>& maxima);
    /// Sends one report now, whether auto-tune is on or not.
    void sendReport(float maximum, float minimum = 0.0F);
    /// Sends unsolicited bytes.
    void send(std::span<const std::uint8_t> bytes);

    // Faults.

    void onOccurrence(std::size_t occurrence, VelmorindalMessageType type, Fault fault);
    void onFirst(VelmorindalMessageType type, Fault fault);
    /// The next frame of this type that arrives.
    void onNext(VelmorindalMessageType type, Fault fault);
    void onEvery(VelmorindalMessageType type, Fault fault);
    void staySilentOn(VelmorindalMessageType type) { onEvery(type, Fault::silence()); }
    /// The report of this number, from 1, of all since the dongle was created.
    void onReport(std::size_t number, Fault fault);

    // What the host sent.

    /// Every whole frame since the start, header included, oldest first.
    std::vector<ByteBuffer> receivedFrames() const;
    std::size_t timesReceived(VelmorindalMessageType type) const;
    /// The number of bytes that belonged to no frame.
    std::size_t skippedBytes() const;
    /// Waits until `count` frames have arrived since the start, the dongle is unplugged, or `timeout`
    /// has passed.
    /// @returns whether they have arrived.
    virtual bool waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const = 0;
    /// Calls `hook` with each frame after it was recorded and before it is answered. The dongle waits for it,
    /// so it must not wait for the host.
    void whenReceived(std::function<void(std::span<const std::uint8_t>)> hook);

  protected:
    using Clock = OutgoingLine::Clock;

    /// The device starts to hum at `start`.
    SimulatedDongle(std::filesystem::path path, Options options, Clock::time_point start);

    virtual Clock::time_point now() const = 0;

    /// A test has changed something that may need an action on the wire.
    virtual void wake() REQUIRES(mutex_) {}
    /// A frame was recorded.
    virtual void frameArrived() REQUIRES(mutex_) {}

    /// Handles what the host has sent, up to a frame after which the dongle is to be unplugged.
    void receive(std::span<const std::uint8_t> bytes) REQUIRES(mutex_);
    /// Advances to `now`: hums, and puts the reports that are due on the line.
    void advanceTo(Clock::time_point now) REQUIRES(mutex_);
    /// Asks for the planned unplugging if the host has read everything, or if it has taken too long.
    void unplugOnceTaken(bool hostHasTakenAll, Clock::time_point now) REQUIRES(mutex_);
    /// When there will be something to do; nothing if that does not depend on time. A blocked line waits for
    /// the host, not for a time.
    std::optional<Clock::time_point> due(bool lineIsBlocked) const REQUIRES(mutex_);

    /// Whether the dongle is to be unplugged once the host has read the last answer.
    bool leavesAfterAnswer() const REQUIRES(mutex_) { return unplugBy_.has_value(); }

    mutable Mutex mutex_;
    OutgoingLine line_ GUARDED_BY(mutex_);
    bool unplugAsked_ GUARDED_BY(mutex_) = false;
    bool plugged_ GUARDED_BY(mutex_) = true;

    std::size_t receivedCount() const REQUIRES(mutex_) { return receivedCount_; }

  private:
    FaultScript& script(VelmorindalMessageType type) REQUIRES(mutex_) {
        return scripts_[static_cast<std::uint8_t>(type)];
    }
    const FaultScript& script(VelmorindalMessageType type) const REQUIRES(mutex_) {
        return scripts_[static_cast<std::uint8_t>(type)];
    }
    void handle(const ByteBuffer& frame) REQUIRES(mutex_);
    void sendReports(Clock::time_point now) REQUIRES(mutex_);
    void deliverReport(ByteBuffer report, Clock::time_point now) REQUIRES(mutex_);
    void deliver(const AnswerPlan& plan, Clock::time_point now) REQUIRES(mutex_);

    const std::filesystem::path path_;
    const Options options_;
    const Clock::time_point start_;
    WireFrameReader reader_ GUARDED_BY(mutex_);
    SimulatedDevice device_ GUARDED_BY(mutex_);
    FaultScripts scripts_ GUARDED_BY(mutex_);
    FaultScript reportScript_ GUARDED_BY(mutex_);
    std::optional<Clock::time_point> nextReport_ GUARDED_BY(mutex_);
    ByteBuffer heldBack_ GUARDED_BY(mutex_);
    std::vector<ByteBuffer> received_ GUARDED_BY(mutex_);
    std::size_t receivedCount_ GUARDED_BY(mutex_) = 0;
    std::function<void(std::span<const std::uint8_t>)> hook_ GUARDED_BY(mutex_);
    /// When the dongle is unplugged even if the host has not read the last bytes.
    std::optional<Clock::time_point> unplugBy_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
