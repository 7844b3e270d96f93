#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "protocol/VelmorindalCommand.h"
#include "protocol/VelmorindalMessageType.h"
#include "simulator/DeviceState.h"
#include "simulator/Fault.h"
#include "simulator/FaultScript.h"
#include "simulator/HostWatch.h"
#include "simulator/OutgoingLine.h"
#include "simulator/PseudoTerminal.h"
#include "simulator/SimulatedDevice.h"
#include "simulator/WakeUp.h"
#include "simulator/WireFrame.h"

namespace velmorindal {

/// A dongle and the device behind it, played over a pseudo-terminal that any program can open as a serial
/// port.
///
/// Queries are answered from the device's state. Commands take effect and are acknowledged by their own bytes
/// as a response. The order to store keeps a copy of the settings; a reset goes back to that copy (or to the
/// initial settings where nothing was stored). The last hum is reported once. From the acknowledgement of
/// auto-tune channel 2 to that of another channel, reports are streamed. A frame of an unknown type or with a
/// payload of the wrong length is answered by an error frame ('e') of its type without payload, and has no
/// effect. What does not start like a command frame is skipped byte by byte.
///
/// A test is to read like the field talks:
///
///     VirtualDongle dongle{directory};
///     dongle.staySilentOn(VelmorindalMessageType::status);
///     dongle.onFirst(VelmorindalMessageType::version, Fault::halfAHeader());
///     dongle.onOccurrence(2, VelmorindalMessageType::outputPath, Fault::late());
///     dongle.onEvery(VelmorindalMessageType::autoTune, Fault::silence().stillApplied());
///     dongle.onReport(3, Fault::wrongMarker());
///
/// Occurrences count the frames of one type that were received, from 1, queries and commands alike. A fault
/// for one occurrence goes before a fault for every one; the last said of two wins.
///
/// All operations may be called from any thread, also from the hook of `whenReceived`. When a host has closed
/// the port, nobody has opened it for 50 ms and nobody holds its lock (flock), the exclusive mode (TIOCEXCL)
/// ends and unread bytes are gone, as they would be on a real port.
class VirtualDongle {
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
    };

    /// Makes the pseudo-terminal and the link to it, and starts to serve.
    ///
    /// @throws std::system_error naming the path when the directory is missing, the name is taken or the
    ///         system refuses; nothing is left behind then.
    explicit VirtualDongle(const std::filesystem::path& directory, Options options);
    explicit VirtualDongle(const std::filesystem::path& directory) : VirtualDongle{directory, Options{}} {}
    VirtualDongle(const VirtualDongle&) = delete;
    VirtualDongle& operator=(const VirtualDongle&) = delete;
    /// Unplugs. Not from the hook.
    ~VirtualDongle();

    /// The link that a host opens.
    const std::filesystem::path& path() const { return path_; }

    /// Removes the link and closes the pseudo-terminal: whoever has it open sees a link count of 0 and reads
    /// end at once. It has happened when this returns; from the hook it happens right after the hook. Once is
    /// enough.
    void unplug();
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
    /// Sends bytes that nobody asked for.
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
    /// Waits until `count` frames have arrived since the start, or `timeout` has passed.
    /// @returns whether they have.
    bool waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const;
    /// Calls `hook` with each frame on the server thread, after it was recorded and before it is answered.
    /// Everything waits for it, so it must not wait for the host.
    void whenReceived(std::function<void(std::span<const std::uint8_t>)> hook);

  private:
    using Clock = OutgoingLine::Clock;
    using Lock = std::unique_lock<std::mutex>;

    FaultScript& script(VelmorindalMessageType type) { return scripts_[static_cast<std::uint8_t>(type)]; }
    const FaultScript& script(VelmorindalMessageType type) const {
        return scripts_[static_cast<std::uint8_t>(type)];
    }

    // On the server thread, in the order of a turn of its loop.
    void serve();
    void sendWhatIsDue(Clock::time_point now);
    void sendReports(Clock::time_point now);
    void unplugOnceTaken(Clock::time_point now);
    void waitForWork(Lock& lock);
    Clock::time_point nextDeadline(Clock::time_point now) const;
    void receive(Lock& lock);
    void handle(const ByteBuffer& frame, Lock& lock);

    // From any thread, under the lock.
    void deliverReport(ByteBuffer report, Clock::time_point now);
    void deliver(const AnswerPlan& plan, Clock::time_point now);

    const Options options_;
    const std::filesystem::path path_;
    const Clock::time_point start_ = Clock::now();
    const WakeUp wakeUp_;

    mutable std::mutex mutex_;
    /// A frame was received, or the dongle is out.
    mutable std::condition_variable changed_;
    PseudoTerminal terminal_;
    HostWatch hosts_;
    OutgoingLine line_;
    WireFrameReader reader_;
    SimulatedDevice device_;
    FaultScripts scripts_;
    FaultScript reportScript_;
    std::optional<Clock::time_point> nextReport_;
    ByteBuffer heldBack_;
    std::vector<ByteBuffer> received_;
    std::size_t receivedCount_ = 0;
    std::function<void(std::span<const std::uint8_t>)> hook_;
    /// When the dongle is pulled out even if the host has not taken the last bytes.
    std::optional<Clock::time_point> unplugBy_;
    bool unplugAsked_ = false;
    bool plugged_ = true;
    std::thread::id serverId_;
    std::thread server_;  // last: it uses all of the above
};

}  // namespace velmorindal
