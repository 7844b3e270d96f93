#include "FaultMatrix.h"

#include <algorithm>
#include <array>

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

struct VersionTextRow {
    Exchange exchange;
    FaultKind kind;
    std::string text;
};

/// Everywhere else it is the device's own, "Velmorindal 1.1M".
const std::vector<VersionTextRow>& versionTextRows() {
    using enum Exchange;
    using enum FaultKind;
    static const std::vector<VersionTextRow> rows{
        // The probe looks at nothing but the length byte and the text, whatever frame they belong to.
        {probe, halfAPayload, "Velmorin"},
        {probe, anotherFrameFirst, "\x01"},
        {probe, tenThousandFramesFirst, "\x01"},
        {probe, lengthTooShort, "Velmorindal 1.1"},
        {probe, payloadOneByteLonger, std::string{"Velmorindal 1.1M\0", 17}},
        {probe, payloadOneByteShorter, "Velmorindal 1.1"},
        // 00 FF 55 and 'r' pass for a header that announces 114 bytes.
        {probe, noiseFirst, "bv\x10Velmorindal 1.1M"},
        // The check that follows decodes a whole frame, and any length of text is a version.
        {version, wrongKind, ""},
        {version, errorFrame, ""},
        {version, wrongMarker, ""},
        {version, lengthTooShort, "Velmorindal 1.1"},
        {version, payloadOneByteLonger, std::string{"Velmorindal 1.1M\0", 17}},
        {version, payloadOneByteShorter, "Velmorindal 1.1"},
    };
    return rows;
}

FaultRow faultRow(FaultKind kind, std::string_view name, const Fault& fault, const std::string& diagnostic,
                  const std::array<Outcome, columnCount>& outcomes) {
    return {kind, name, fault, diagnostic, outcomes};
}

}  // namespace

const std::vector<ExchangeRow>& exchangeRows() {
    using enum Exchange;
    static const std::vector<ExchangeRow> rows{
        {probe, "Probe", Column::probe, Type::version, 1, 1},
        {version, "Version", Column::version, Type::version, 2, 2},
        {status, "Status", Column::status, Type::status, 1, 3},
        {readProtocol, "ReadProtocol", Column::read, Type::protocolSelect, 1, 4},
        {readOutputPath, "ReadOutputPath", Column::read, Type::outputPath, 1, 5},
        {readHumDuration, "ReadHumDuration", Column::read, Type::humDuration, 1, 6},
        {readHumThresholds, "ReadHumThresholds", Column::read, Type::humThresholds, 1, 7},
        {readKeyboard, "ReadKeyboard", Column::lastRead, Type::keyboardConfig, 1, 8},
        {bluetoothReadProtocol, "BluetoothReadProtocol", Column::read, Type::protocolSelect, 1, 4},
        {bluetoothReadHumDuration, "BluetoothReadHumDuration", Column::read, Type::humDuration, 1, 5},
        {bluetoothReadHumThresholds, "BluetoothReadHumThresholds", Column::read, Type::humThresholds, 1, 6},
        {bluetoothReadKeyboard, "BluetoothReadKeyboard", Column::lastRead, Type::keyboardConfig, 1, 7},
        {writeProtocol, "WriteProtocol", Column::write, Type::protocolSelect, 1, 1},
        {writeOutputPath, "WriteOutputPath", Column::write, Type::outputPath, 1, 2},
        {writeHumDuration, "WriteHumDuration", Column::write, Type::humDuration, 1, 3},
        {writeRelays, "WriteRelays", Column::write, Type::relayConfig, 1, 4},
        {writeHumThresholds, "WriteHumThresholds", Column::write, Type::humThresholds, 1, 5},
        {writeKeyboard, "WriteKeyboard", Column::write, Type::keyboardConfig, 1, 6},
        {storeSettings, "StoreSettings", Column::store, Type::writeSettings, 1, 7},
        {bluetoothProtocol, "BluetoothProtocol", Column::write, Type::protocolSelect, 1, 1},
        {bluetoothHumDuration, "BluetoothHumDuration", Column::write, Type::humDuration, 1, 2},
        {bluetoothRelays, "BluetoothRelays", Column::write, Type::relayConfig, 1, 3},
        {bluetoothHumThresholds, "BluetoothHumThresholds", Column::write, Type::humThresholds, 1, 4},
        {bluetoothKeyboard, "BluetoothKeyboard", Column::write, Type::keyboardConfig, 1, 5},
        {bluetoothStore, "BluetoothStore", Column::store, Type::writeSettings, 1, 6},
        {autoTuneStart, "AutoTuneStart", Column::start, Type::autoTune, 1, 1},
        {autoTuneReport, "AutoTuneReport", Column::report, Type::autoTune, 1, 1},
        {autoTuneStop, "AutoTuneStop", Column::stop, Type::autoTune, 2, 2},
        {durationFirst, "DurationFirst", Column::first, Type::lastHumDuration, 1, 1},
        {durationLater, "DurationLater", Column::later, Type::lastHumDuration, 2, 2},
    };
    return rows;
}

const std::vector<FaultRow>& faultRows() {
    using enum FaultKind;
    using enum Outcome;
    static const std::string none;
    static const std::string kind = "Message type unexpected:  120  command/response/error are  99 114 101";
    static const std::string error = "Message type unexpected:  101  command/response/error are  99 114 101";
    static const std::string marker = "Expected binary message ( 98 ). Got  97";
    static const Fault noFault{"none", [](AnswerPlan&) {}};
    // A row for each fault; the columns stand in the order of `Column`, in lines of five, two and five:
    //     probe, version, status, one of the first four readings, the last reading
    //     a write, the order to store
    //     start, report and stop of auto-tune, first and later question for the last hum
    static const std::vector<FaultRow> rows{
        faultRow(silence, "Silence", Fault::silence(), none,
                 {skipped, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, lost, thrown, thrown, thrown}),
        // Two bytes, and the time-out. A report that comes within it is lost too.
        faultRow(halfAHeader, "HalfAHeader", Fault::halfAHeader(), none,
                 {skipped, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, swallowed, thrown, thrown, thrown}),
        // The probe takes what text there is. The order to store is acknowledged without payload: its answer
        // lacks the last byte of the header instead.
        faultRow(halfAPayload, "HalfAPayload", Fault::halfAPayload(), none,
                 {refused, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, swallowed, thrown, thrown, thrown}),
        // The probe takes the first frame there is.
        faultRow(anotherFrameFirst, "AnotherFrameFirst", Fault::anotherFrameFirst(), none,
                 {refused, good, good, good, good,  //
                  good, good,                       //
                  good, good, good, good, good}),
        faultRow(tenThousandFramesFirst, "TenThousandFramesFirst", Fault::floodFirst(10'000), none,
                 {refused, good, good, good, good,  //
                  good, good,                       //
                  good, good, good, good, good}),
        // The probe looks at no other byte of the header than the length. Nor does the version check ask
        // whether what it got is valid.
        faultRow(wrongKind, "WrongKind", Fault::wrongKind('x'), kind,
                 {good, unchecked, invalid, invalid, invalid,  //
                  invalid, invalid,                            //
                  invalid, invalid, invalid, invalid, invalid}),
        faultRow(errorFrame, "ErrorFrame", Fault::errorFrame(), error,
                 {good, unchecked, invalid, invalid, invalid,  //
                  invalid, invalid,                            //
                  invalid, invalid, invalid, invalid, invalid}),
        faultRow(wrongMarker, "WrongMarker", Fault::wrongMarker('a'), marker,
                 {good, unchecked, invalid, invalid, invalid,  //
                  invalid, invalid,                            //
                  invalid, invalid, invalid, invalid, invalid}),
        // A frame of another type is passed over, and no other comes.
        faultRow(wrongType, "WrongType", Fault::wrongType(0x41), none,
                 {good, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                        //
                  thrown, lost, thrown, thrown, thrown}),
        // The missing byte is waited for; the probe then takes the text as it is.
        faultRow(lengthTooLong, "LengthTooLong", Fault::lengthTooLong(), none,
                 {good, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                        //
                  thrown, swallowed, thrown, thrown, thrown}),
        // The last byte stays in the port and shifts what follows, but for the probe, whose port is closed. A
        // payload that a command is acknowledged with is not looked at. Nothing follows the order to store or
        // to stop.
        faultRow(lengthTooShort, "LengthTooShort", Fault::lengthTooShort(), none,
                 {good, nextThrown, invalid, invalid, invalid,  //
                  nextThrown, good,                             //
                  nextThrown, swallowed, good, invalidNextThrown, invalidNextThrown}),
        // Any length is good for a version and for an acknowledgement.
        faultRow(payloadOneByteLonger, "PayloadOneByteLonger", Fault::payloadOneByteLonger(), none,
                 {good, good, invalid, invalid, invalid,  //
                  good, good,                             //
                  good, invalid, good, invalid, invalid}),
        // The order to store is acknowledged without payload, which cannot be shorter: its answer is the
        // right one.
        faultRow(payloadOneByteShorter, "PayloadOneByteShorter", Fault::payloadOneByteShorter(), none,
                 {good, good, invalid, invalid, invalid,  //
                  good, good,                             //
                  good, invalid, good, invalid, invalid}),
        // A report that comes only after the order to stop is no reading: it passes for the acknowledgement.
        faultRow(answerDuringTheNextExchange, "AnswerDuringTheNextExchange", Fault::late(), none,
                 {late, late, late, late, late,  //
                  late, late,                    //
                  late, lost, late, late, late}),
        // 00 FF 55 and 'r' pass for a header that announces 114 bytes.
        faultRow(noiseFirst, "NoiseFirst", Fault::noiseFirst({0x00, 0xFF, 0x55}), none,
                 {refused, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, swallowed, thrown, thrown, thrown}),
        faultRow(pulledBefore, "PulledBefore", Fault::unplugBeforeAnswer(), none,
                 {skipped, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, gone, thrown, thrown, gone}),
        faultRow(pulledDuring, "PulledDuring", Fault::unplugDuringAnswer(), none,
                 {skipped, thrown, thrown, thrown, thrown,  //
                  thrown, thrown,                           //
                  thrown, gone, thrown, thrown, gone}),
        // An exchange that has its answer notices nothing; only writing the next frame fails, if there is
        // one.
        faultRow(pulledAfter, "PulledAfter", Fault::unplugAfterAnswer(), none,
                 {unopened, nextNothing, nextNothing, nextNothing, good,  //
                  nextNothing, good,                                      //
                  nextNothing, nextNothing, good, nextNothing, nextNothing}),
        // For a report nothing is written that could be cut.
        faultRow(writeCutShort, "WriteCutShort", noFault, none,
                 {nothing, nothing, nothing, nothing, nothing,  //
                  nothing, nothing,                             //
                  nothing, good, nothing, nothing, nothing}),
    };
    return rows;
}

const std::vector<Cell>& matrixCells() {
    static const std::vector<Cell> cells = [] {
        std::vector<Cell> all;
        for (const ExchangeRow& exchange : exchangeRows()) {
            for (const FaultRow& fault : faultRows()) {
                const auto column = static_cast<std::size_t>(exchange.column);
                all.push_back({exchange, fault, fault.outcomes[column]});
            }
        }
        return all;
    }();
    return cells;
}

std::string versionTextSeenBy(Exchange exchange, const Cell& cell) {
    const auto& rows = versionTextRows();
    const auto row = std::ranges::find_if(rows, [&](const VersionTextRow& candidate) {
        return candidate.exchange == exchange && exchange == cell.exchange.exchange &&
               candidate.kind == cell.fault.kind;
    });
    return row == rows.end() ? "Velmorindal 1.1M" : row->text;
}

}  // namespace velmorindal
