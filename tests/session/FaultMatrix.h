#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Fault.h"
#include "VelmorindalMessageType.h"

namespace velmorindal {

/// Every exchange that a session ever has with a dongle, in the order in which a session comes to them.
enum class Exchange {
    probe,
    version,
    status,
    readProtocol,
    readOutputPath,
    readHumDuration,
    readHumThresholds,
    readKeyboard,
    bluetoothReadProtocol,
    bluetoothReadHumDuration,
    bluetoothReadHumThresholds,
    bluetoothReadKeyboard,
    writeProtocol,
    writeOutputPath,
    writeHumDuration,
    writeRelays,
    writeHumThresholds,
    writeKeyboard,
    storeSettings,
    bluetoothProtocol,
    bluetoothHumDuration,
    bluetoothRelays,
    bluetoothHumThresholds,
    bluetoothKeyboard,
    bluetoothStore,
    autoTuneStart,
    autoTuneReport,
    autoTuneStop,
    durationFirst,
    durationLater,
};

/// Everything that can go wrong in one.
enum class FaultKind {
    silence,
    halfAHeader,
    halfAPayload,
    anotherFrameFirst,
    tenThousandFramesFirst,
    wrongKind,
    errorFrame,
    wrongMarker,
    wrongType,
    lengthTooLong,
    lengthTooShort,
    payloadOneByteLonger,
    payloadOneByteShorter,
    answerDuringTheNextExchange,
    noiseFirst,
    pulledBefore,
    pulledDuring,
    pulledAfter,
    writeCutShort,
};

/// The effect of a fault on an exchange.
enum class Outcome {
    missing,            ///< no entry: never right
    good,               ///< as if nothing had happened
    thrown,             ///< no whole frame of the type came: the exchange throws
    nothing,            ///< the frame could not be written whole: no answer, without an error
    invalid,            ///< the answer is refused, after the line that says why
    unchecked,          ///< the answer is invalid, but only its text is used, and that is empty
    late,               ///< thrown; the answer then comes into the next exchange
    nextThrown,         ///< good, but a byte that is left over makes the next exchange throw
    nextNothing,        ///< good, but nothing can be written any more
    invalidNextThrown,  ///< both: the answer is refused, and the byte left over spoils the next
    skipped,            ///< a candidate without an answer: no dongle
    refused,            ///< a candidate with another text: no dongle
    unopened,           ///< a dongle that is gone when it is to be opened
    lost,               ///< a report that becomes no reading, without a message
    swallowed,          ///< the same, and what comes until the time-out is over is lost with it
    gone,               ///< no answer, and nothing can be written any more
};

/// Exchanges on which each fault has the same effect.
enum class Column {
    probe,
    version,
    status,
    read,
    lastRead,
    write,
    store,
    start,
    report,
    stop,
    first,
    later,
};
constexpr std::size_t columnCount = 12;

struct ExchangeRow {
    Exchange exchange;
    std::string_view name;
    Column column;
    VelmorindalMessageType type;
    std::size_t occurrence;  ///< among the frames of that type; of the reports for a report
    std::size_t
        frame;  ///< of the session's frames, the one that is answered; for a report, the last before it
};

struct FaultRow {
    FaultKind kind;
    std::string_view name;
    Fault fault;             ///< of no effect where the host's own write is cut
    std::string diagnostic;  ///< printed of an answer that is looked at; empty: nothing
    std::array<Outcome, columnCount> outcomes;
};

struct Cell {
    const ExchangeRow& exchange;
    const FaultRow& fault;
    Outcome outcome;
};

const std::vector<ExchangeRow>& exchangeRows();
const std::vector<FaultRow>& faultRows();
/// One for each exchange and fault.
const std::vector<Cell>& matrixCells();

/// The version text that the probe or the version check comes to see.
std::string versionTextSeenBy(Exchange exchange, const Cell& cell);

}  // namespace velmorindal
