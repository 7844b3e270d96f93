#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ChangeNotifier.h"
#include "ChosenSettings.h"
#include "Dispatch.h"
#include "DongleSearch.h"
#include "Guarded.h"
#include "ModelTypes.h"
#include "OperationResult.h"
#include "Published.h"
#include "SerialPort.h"
#include "SessionStates.h"
#include "System.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

/// The one model and controller of the program: the settings being edited, and all exchanges with the device.
///
/// Published properties announce on `objectWillChange` before they change, and are changed on the main thread
/// only, where observers are called. The operations that talk to the device block, and run on a background
/// thread one at a time: the port has no lock. They post every published change to the main queue
/// of `dispatch`.
class VelmorindalSwitch {
  public:
    /// `dispatch` and `system`, which has the ports and the clock, must outlive the model and every
    /// background run.
    VelmorindalSwitch(Dispatch& dispatch, System& system, DongleSearch search = {});
    VelmorindalSwitch(const VelmorindalSwitch&) = delete;
    VelmorindalSwitch& operator=(const VelmorindalSwitch&) = delete;
    /// Does not close the port: call disconnect() for that.
    ~VelmorindalSwitch();

    /// The one given to the constructor.
    System& system() const { return system_; }

    ChangeNotifier objectWillChange;

    Published<ConnectionStatus> connectionState{objectWillChange, ConnectionStatus::idle};
    /// The port to the dongle; stays after disconnect(), closed.
    Guarded<std::shared_ptr<SerialPort>> serialPort;
    /// True once the device's settings have been read completely.
    std::atomic<bool> isValid{false};
    /// The text of the latest failure or warning.
    Guarded<std::optional<std::string>> lastError;
    Published<OutputPath> outputPath{objectWillChange, OutputPath::Switch};
    Published<OutputMode> outputMode{objectWillChange, OutputMode::Direct};
    /// One value: changing one key republishes all three.
    Published<keyList> outputKeys{objectWillChange, keyList{}};
    /// The clarity threshold of a hum, 0 to 1.
    Published<float> clarity{objectWillChange, 0.5F};
    /// The duration in seconds that separates a short hum from a long one.
    Published<float> cutoff{objectWillChange, 1.5F};
    Published<bool> shortEnabled{objectWillChange, false};
    Published<bool> longEnabled{objectWillChange, true};
    /// The settings were written to the device, and neither Next nor Back was pressed since.
    Published<bool> justSaved{objectWillChange, false};
    /// Whole steps: 0 to 6 for a connection, which includes reading the settings, 0 to 5 for a write.
    Published<double> readWriteProgress{objectWillChange, 0.0};
    Published<PollingState> pollingState{objectWillChange, PollingState::none};
    /// A calibration run has been submitted and has not ended.
    std::atomic<bool> bgIsProcessing{false};
    /// How many readings of both kinds have come from the device. Grows just before a reading is announced,
    /// so that observers can tell a reading with an equal value from any other change.
    std::atomic<std::uint64_t> readingsReceived{0};
    /// The clarity last reported, 0 to 1; 0 while clarity polling does not run.
    Published<double> detectedClarity{objectWillChange, 0.0};
    /// The duration last reported, in seconds. A device reports each hum once and 0 after it, so this is 0
    /// between hums, and while duration polling does not run.
    Published<double> detectedDuration{objectWillChange, 0.0};

    /// The tables of KeyTables.h.
    static const std::map<OutputKey, std::string>& keyDisplayStrings();
    static const std::vector<OutputKey>& keyDisplayOrder();
    static const std::map<OutputKey, std::uint32_t>& keyCodes();
    static std::vector<OutputKey> keysWithCode(std::uint32_t code);

    /// The settings being edited. Main thread.
    ChosenSettings chosenSettings() const;
    /// Sets all of them, each as one published change. Main thread.
    void choose(const ChosenSettings& settings);

    /// The paths of the dongles that answer a version query with a text starting with "Velmorindal", in the
    /// order of the directory walk. Blocks up to two seconds for each silent candidate. Background thread.
    std::vector<std::string> listDevices();

    /// Finds a dongle, opens it, checks version and link, and reads the device's settings. Background thread.
    ///
    /// After a success `connectionState` is `connected`; after a failure it is `error`, or `disconnected`
    /// when the device has no link to the dongle. Once a dongle was found, also by an attempt that failed,
    /// the port stays and further calls fail without a change of state.
    ///
    /// @returns a success when the settings were read, with a warning if several dongles are plugged in;
    ///          otherwise a failure with the reason. `lastError` holds the same text.
    OperationResult connect();

    /// Closes the port. If `flush` is set, first reads what has arrived (up to 1000 bytes), which may wait a
    /// fifth of a second; only while no other operation uses the port. Main thread. Without `flush` it is
    /// safe while connect() runs. Safe without a port.
    void disconnect(bool flush);

    /// Reads the settings that the device holds into the model. Background thread.
    ///
    /// @returns a success, or a failure with the reason, which `lastError` holds too. After a failure,
    ///          properties posted by earlier steps keep their new values. After a query without an answer,
    ///          `connectionState` is `error`.
    OperationResult readSettingsFromDevice();

    /// Whether the device can hold `cutoff`, in ticks of 40 ms and sixteen bits. A settings file may have one
    /// that it cannot; committing that stops the process.
    bool cutoffFitsDevice() const;

    /// Writes the settings to the device in one fixed sequence that ends with the order to store them.
    /// Background thread.
    ///
    /// When the settings were never read, it sends nothing and leaves `lastError` alone. When not connected,
    /// it sends nothing and `lastError` holds the reason. When a step fails, no later step is sent and
    /// nothing is undone; `connectionState` becomes `error` and `lastError` holds the reason. A cutoff that
    /// does not fit the device stops the process.
    ///
    /// @returns true when every command was acknowledged.
    bool commitSettingsToDevice();

    /// Starts a calibration run in the background and returns at once. Does nothing while `bgIsProcessing` is
    /// true. Main thread.
    void beginClarityPolling();
    void beginDurationPolling();

    /// Ends a calibration run, also one that is just starting, and waits for its end. Runs pending main-queue
    /// work between its checks, 20 ms apart. Main thread.
    void stopPollingAndWait();

    /// Asks the device for the current value of one message type: sends four bytes, reads one frame. Discards
    /// any number of frames of other types. Background thread.
    ///
    /// @returns what the factory makes of the answer: nothing, or an object whose `_valid` may be false.
    ///          Nothing also when the query could not be written whole.
    /// @throws VelmorindalException NoConnectionError without a port, when the write throws, and when no
    ///         whole frame arrives in time.
    std::unique_ptr<VelmorindalCommand> queryDevice(std::uint8_t code);

    /// Writes a message and waits for its acknowledgement, a frame of the same type. Background thread.
    ///
    /// @returns whether the answer's header is well formed; false also when `command` could not be
    ///          written whole.
    /// @throws VelmorindalException NoConnectionError without a port and when no whole frame arrives in time,
    ///         NotImplementedError for the base class, or what serialize() throws, before anything is
    ///         written; PortException when the write throws.
    bool sendCommand(const VelmorindalCommand& command);

    /// Writes the chosen settings to the XML file `filename` (UTF-8), which is replaced in one step.
    /// Main thread.
    ///
    /// @returns true, also when writing failed: the failure is printed, and an earlier file stays as it was.
    bool writeXML(const std::string& filename) const;

    /// Loads the settings from the XML file `filename` (UTF-8). Main thread.
    ///
    /// @returns a success, or a failure with the reason, which `lastError` holds too, when the file cannot be
    ///          read, is not well formed or lacks a setting. After a failure every setting is unchanged.
    OperationResult loadXML(const std::string& filename);

  private:
    static constexpr std::string_view notConnectedText =
        "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your device is "
        "connected and run this program again.";

    /// One whole frame, or nothing when there is no port, its device is gone or its deadline passed first.
    std::optional<ByteBuffer> readMessage() const;
    /// The next frame of that type; others before it are discarded. @throws NoConnectionError when
    /// none comes.
    ByteBuffer readAnswer(std::uint8_t messageType) const;

    /// Leaves `text` in `lastError`.
    OperationResult failure(std::optional<std::string> text);

    /// Why a step of connect() failed, and the state that it leaves.
    struct ConnectionFailure {
        std::string text;
        ConnectionStatus state = ConnectionStatus::error;
    };

    // The steps of connect(). Each returns its failure or nothing.
    std::optional<ConnectionFailure> openDongle(const std::string& path);
    std::optional<ConnectionFailure> checkVersion();
    std::optional<ConnectionFailure> checkLink();
    OperationResult readSettingsAndFinish();
    /// Publishes the text and the state.
    OperationResult connectionFailure(const ConnectionFailure& reason);
    static void flushPort(SerialPort* port);

    /// The answer that holds a setting, or why there is no usable one.
    struct Reading {
        std::unique_ptr<VelmorindalCommand> answer;
        std::optional<std::string> failure = std::nullopt;
    };
    Reading readSetting(VelmorindalMessageType type, std::string_view step);

    // The steps of readSettingsFromDevice(). Each returns the text of its failure or nothing.
    std::optional<std::string> readOutputPath();
    std::optional<std::string> readHumDuration();
    std::optional<std::string> readThresholds();
    std::optional<std::string> readKeys();

    // The calibration runs, their turns, and what starts them.
    void beginPolling(void (VelmorindalSwitch::*run)());
    /// Repeats `turn` while `pollingState` is `state`.
    void pollWhile(PollingState state, bool (VelmorindalSwitch::*turn)());
    void clarityPolling();
    /// One turn. @returns false when no frame came.
    bool pollClarity();
    void durationPolling();
    bool pollDuration();
    /// sendCommand(), with false for every failure.
    bool acknowledged(const VelmorindalCommand& command);

    Dispatch& dispatch_;
    System& system_;
    const DongleSearch search_;
};

}  // namespace velmorindal
