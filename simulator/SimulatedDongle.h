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

/// A dongle and the device behind it, without the wire: what comes in, what goes out and when, and every
/// operation that a test has on it. A derived class carries the bytes.
///
/// Queries are answered from the device's state. Commands take effect and are acknowledged by their own bytes
/// as a response. The order to store keeps a copy of the settings; a reset goes back to that copy (or to the
/// initial settings where nothing was stored). The last hum is reported once. From the acknowledgement of
/// auto-tune channel 2 to that of another channel, reports are streamed. A frame of an unknown type or with a
/// payload of the wrong length is answered by an error frame ('e') of its type without payload, and has no
/// effect. What does not start like a command frame is skipped byte by byte.
///
/// Tests use the words of the field:
///
///     dongle.staySilentOn(VelmorindalMessageType::status);
///     dongle.onFirst(VelmorindalMessageType::version, Fault::halfAHeader());
///     dongle.onOccurrence(2, VelmorindalMessageType::outputPath, Fault::late());
///     dongle.onEvery(VelmorindalMessageType::autoTune, Fault::silence().stillApplied());
///     dongle.onReport(3, Fault::wrongMarker());
///
/// Occurrences count the frames of one type that were received, from 1, queries and commands alike. A fault
/// for one occurrence goes before a fault for every one; later calls override earlier ones.
///
/// All operations may be called from any thread, also from the hook of `whenReceived`.
class SimulatedDongle {
  public:
    struct Options {
        /// Of the link in the directory.
        std::string name = "cu.usbmodem-simulated";
        /// What the device starts with.
        DeviceState device = {};
        /// Sends at the pace of a 115200-baud line with 8 data bits, no parity and one stop bit: 11520 bytes
        /// a second.
        bool paced = false;
        /// Hums of varied clarity and length, one after the other, the same ones for the same seed.
        bool hums = false;
        std::uint32_t seed = 1;
        /// Between two streamed reports; zero: none are sent but those of `sendReport`.
        std::chrono::microseconds reportInterval{50'000};
        /// Whether received frames are kept. Off for a dongle that serves for hours.
        bool keepsReceivedFrames = true;
        /// How long a dongle that is pulled out after an answer waits for the host to take it.
        std::chrono::milliseconds waitForTheHost{1000};
    };

    SimulatedDongle(const SimulatedDongle&) = delete;
    SimulatedDongle& operator=(const SimulatedDongle&) = delete;
    virtual ~SimulatedDongle() = default;

    /// What a host opens.
    const std::filesystem::path& path() const { return path_; }

    /// Takes the dongle away: a host that has it open sees a link count of 0, and its reads end at once. It
    /// has happened when this returns; from the hook it happens right after the hook. Once is enough.
    virtual void unplug() = 0;
    bool isPlugged() const;

    // The device.

    DeviceState state() const;
    /// Prepares the device: changes its state by `change`, in one step. `change` must not call the dongle.
    void prepare(const std::function<void(DeviceState&)>& change);
    /// The device has just detected a hum of `ticks` (40 ms each).
    void humOnce(std::uint16_t ticks);
    /// From now on streamed reports carry this clarity (0.05 until then), whether the device hums or not.
    void reportClarity(float maximum, float minimum = 0.0F);
    /// The next reports carry these clarities, one each; then go on as before.
    void reportClarities(const std::vector<float>& maxima);
    /// Sends one report now, whether auto-tune is on or not.
    void sendReport(float maximum, float minimum = 0.0F);
    /// Sends unsolicited bytes.
    void send(std::span<const std::uint8_t> bytes);

    // Faults.

    void onOccurrence(std::size_t occurrence, VelmorindalMessageType type, Fault fault);
    void onFirst(VelmorindalMessageType type, Fault fault);
    /// The next one of this type to arrive.
    void onNext(VelmorindalMessageType type, Fault fault);
    void onEvery(VelmorindalMessageType type, Fault fault);
    void staySilentOn(VelmorindalMessageType type) { onEvery(type, Fault::silence()); }
    /// The report of this number, from 1, among all those sent since the dongle was made.
    void onReport(std::size_t number, Fault fault);
    /// From now on all goes well again.
    void forgetFaults();

    // What the host sent.

    /// Every whole frame since the start, header included, oldest first.
    std::vector<ByteBuffer> receivedFrames() const;
    std::size_t timesReceived(VelmorindalMessageType type) const;
    /// Bytes that belonged to no frame.
    std::size_t skippedBytes() const;
    /// Waits until `count` frames have arrived since the start, the dongle is out, or `timeout` has passed.
    /// @returns whether they have arrived.
    virtual bool waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const = 0;
    /// Calls `hook` with each frame after it was recorded and before it is answered. Everything waits for it,
    /// so it must not wait for the host.
    void whenReceived(std::function<void(std::span<const std::uint8_t>)> hook);

  protected:
    using Clock = OutgoingLine::Clock;

    /// The device starts to hum at `start`.
    SimulatedDongle(std::filesystem::path path, Options options, Clock::time_point start);

    virtual Clock::time_point now() const = 0;

    /// A test has changed something that the wire may have to act on.
    virtual void wake() REQUIRES(mutex_) {}
    /// A frame was recorded.
    virtual void frameArrived() REQUIRES(mutex_) {}

    /// Takes what the host has sent, up to a frame after which the dongle is to be pulled out.
    void receive(std::span<const std::uint8_t> bytes) REQUIRES(mutex_);
    /// Goes on to `now`: hums, and puts the reports that are due on the line.
    void advanceTo(Clock::time_point now) REQUIRES(mutex_);
    /// Has the dongle pulled out if the host has all that it was to get, or has waited for it long enough.
    void unplugOnceTaken(bool hostHasTakenAll, Clock::time_point now) REQUIRES(mutex_);
    /// When there will be something new to do; nothing where no time needs to pass. A blocked line waits for
    /// the host and not for the time.
    std::optional<Clock::time_point> due(bool lineIsBlocked) const REQUIRES(mutex_);

    /// What is between an answer and the pulling out that follows it.
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
    /// When the dongle is pulled out even if the host has not taken the last bytes.
    std::optional<Clock::time_point> unplugBy_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
