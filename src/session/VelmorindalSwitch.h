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

/// The one model and controller of the program: the settings being edited, and every exchange with the
/// device.
///
/// Published properties announce on `objectWillChange` before they change, and are changed on the main thread
/// only: that is where observers hear of them. The operations that talk to the device block and run on a
/// background thread, one at a time: nothing locks the port between them. They hand every published change to
/// the main queue of the Dispatch that the model was made with. It and the System, through which the model
/// reaches ports and clock, must outlive every background run.
class VelmorindalSwitch {
  public:
    VelmorindalSwitch(Dispatch& dispatch, System& system, DongleSearch search = {});
    VelmorindalSwitch(const VelmorindalSwitch&) = delete;
    VelmorindalSwitch& operator=(const VelmorindalSwitch&) = delete;
    /// Neither closes the port nor talks to the device: disconnect() does.
    ~VelmorindalSwitch();

    /// The one that the model was made with.
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
    /// The settings were just written to the device and not changed since.
    Published<bool> justSaved{objectWillChange, false};
    /// Whole steps: 0 to 6 of a connection with its read, 0 to 5 of a write.
    Published<double> readWriteProgress{objectWillChange, 0.0};
    Published<PollingState> pollingState{objectWillChange, PollingState::none};
    /// A calibration run is under way, from the moment it is submitted to its very end.
    std::atomic<bool> bgIsProcessing{false};
    /// How many readings have come from the device, of both kinds. Grows just before a reading is announced,
    /// so that one of an equal value can be distinguished from any other change.
    std::atomic<std::uint64_t> readingsReceived{0};
    /// The clarity last reported, 0 while clarity polling does not run.
    Published<double> detectedClarity{objectWillChange, 0.0};
    /// The length of the last hum in seconds, 0 while duration polling does not run.
    Published<double> detectedDuration{objectWillChange, 0.0};

    /// The tables of KeyTables.h.
    static const std::map<OutputKey, std::string>& keyDisplayStrings();
    static const std::vector<OutputKey>& keyDisplayOrder();
    static const std::map<OutputKey, std::uint32_t>& keyCodes();
    static std::vector<OutputKey> keysWithCode(std::uint32_t code);

    /// The settings being edited. Main thread.
    ChosenSettings chosenSettings() const;
    /// Sets all of them, one published change each. Main thread.
    void choose(const ChosenSettings& settings);

    /// The paths of the dongles that answer a version query with a text starting "Velmorindal", in the order
    /// in which the directory walk met them. Blocks up to two seconds for each silent candidate; background
    /// thread.
    std::vector<std::string> listDevices();

    /// Finds a dongle, opens it, checks version and link, and reads the device's settings. Background thread.
    ///
    /// @returns a success when the settings were read. `lastError` holds the reason otherwise, and after a
    ///          success it may hold the warning that several dongles are plugged in; so does the result.
    OperationResult connect();

    /// Closes the port, after reading what has arrived (up to 1000 bytes) when `flush` is set. Main thread.
    /// Safe while connect() runs, and with no port.
    void disconnect(bool flush);

    /// Reads the settings that the device holds into the model. Background thread.
    ///
    /// @returns a failure with the reason, which `lastError` holds too; properties posted by earlier steps
    ///          keep their new values. After a query that throws, `connectionState` is `error`.
    OperationResult readSettingsFromDevice();

    /// Whether `cutoff` is a duration that the device can hold, in ticks of 40 ms and sixteen bits. A
    /// settings file may bring one that is not; committing it stops the process.
    bool cutoffFitsDevice() const;

    /// Writes the settings to the device in one fixed sequence that ends with the order to store them.
    /// Background thread.
    ///
    /// @returns true when every command was acknowledged; otherwise nothing was sent (`lastError` untouched
    ///          when no settings were ever read, else holding the reason) or a step failed: no later step was
    ///          sent, nothing is undone, `connectionState` becomes `error` and `lastError` holds the text.
    bool commitSettingsToDevice();

    /// Starts a calibration run in the background and returns at once. Main thread, and only while
    /// `bgIsProcessing` is false.
    void beginClarityPolling();
    void beginDurationPolling();

    /// Main thread. Ends a calibration run, also one that is only just starting, and waits until it has wound
    /// down, running pending main-queue work between checks 20 ms apart.
    void stopPollingAndWait();

    /// Asks the device for the current value of one message type: four bytes out, one frame in. Frames of
    /// other types are discarded, without a limit. Background thread.
    ///
    /// @returns what the factory made of the answer: nothing, or an object whose `_valid` may be false;
    ///          nothing also when the query could not be written whole.
    /// @throws VelmorindalException NoConnectionError without a port, when the write throws, and when no
    ///         whole frame arrives in time.
    std::unique_ptr<VelmorindalCommand> queryDevice(std::uint8_t code);

    /// Writes a message and waits for its acknowledgement, a frame of the same type. Background thread.
    ///
    /// @returns whether the answer's header is well formed; false also when the frame could not be written
    ///          whole.
    /// @throws VelmorindalException NoConnectionError without a port and when no whole frame arrives in time,
    ///         NotImplementedError for the base class, whatever serialize() throws before anything is
    ///         written; PortException when the write throws.
    bool sendCommand(const VelmorindalCommand& command);

    /// Writes the chosen settings to an XML file that is replaced in one step. Main thread. `filename` is
    /// UTF-8.
    ///
    /// @returns true, also when writing failed: the failure is printed and an earlier file stays as it was.
    bool writeXML(const std::string& filename) const;

    /// Loads the settings from an XML file. Main thread. `filename` is UTF-8.
    ///
    /// @returns a failure with the reason, which `lastError` holds too, and every setting unchanged when the
    ///          file cannot be read, is not well formed, or lacks a setting.
    OperationResult loadXML(const std::string& filename);

  private:
    static constexpr std::string_view notConnectedText =
        "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your device is "
        "connected and run this program again.";

    /// One whole frame, or nothing when the port is absent or gone or its deadline passed first.
    std::optional<ByteBuffer> readMessage() const;
    /// The next frame of that type; the others before it are discarded. Throws NoConnectionError when none
    /// comes.
    ByteBuffer readAnswer(std::uint8_t messageType) const;

    /// Leaves `text` in `lastError`.
    OperationResult failure(std::optional<std::string> text);

    /// Why a step of connect() failed, and the state that this ends in.
    struct ConnectionFailure {
        std::string text;
        ConnectionStatus state = ConnectionStatus::error;
    };

    // The steps of connect(), each with its failure or nothing.
    std::optional<ConnectionFailure> openDongle(const std::string& path);
    std::optional<ConnectionFailure> checkVersion();
    std::optional<ConnectionFailure> checkLink();
    OperationResult readSettingsAndFinish();
    /// Publishes text and state.
    OperationResult connectionFailure(const ConnectionFailure& reason);
    static void flushPort(SerialPort* port);

    /// The answer that holds a setting, or why there is none that can be used.
    struct Reading {
        std::unique_ptr<VelmorindalCommand> answer;
        std::optional<std::string> failure = std::nullopt;
    };
    Reading readSetting(VelmorindalMessageType type, std::string_view step);

    // The steps of readSettingsFromDevice(), each with the text of its failure or nothing.
    std::optional<std::string> readOutputPath();
    std::optional<std::string> readHumDuration();
    std::optional<std::string> readThresholds();
    std::optional<std::string> readKeys();

    // The calibration runs, their turns, and what starts them.
    void beginPolling(void (VelmorindalSwitch::*run)());
    /// Turns of a run until `state` is another one.
    void pollWhile(PollingState state, bool (VelmorindalSwitch::*turn)());
    void clarityPolling();
    /// One turn. @returns false when the port brought nothing.
    bool pollClarity();
    void durationPolling();
    bool pollDuration();
    /// sendCommand() with every failure as false.
    bool acknowledged(const VelmorindalCommand& command);

    Dispatch& dispatch_;
    System& system_;
    const DongleSearch search_;
};

}  // namespace velmorindal
