#pragma once

namespace velmorindal {

/// Line speeds in bits a second.
enum class BaudRate {
    baud0,
    baud50,
    baud75,
    baud110,
    baud134,
    baud150,
    baud200,
    baud300,
    baud600,
    baud1200,
    baud1800,
    baud2400,
    baud4800,
    baud9600,
    baud19200,
    baud38400,
    baud57600,
    baud115200,
    baud230400,
};

/// Data bits in a character.
enum class DataBitsSize { bits5, bits6, bits7, bits8 };

/// The parity bit of a character.
enum class ParityType { none, even, odd };

/// The settings of a line. An aggregate, so that callers name what they set.
struct SerialSettings {
    BaudRate receiveRate;
    BaudRate transmitRate;
    /// VMIN, 0..255: with 0 a single read ends after its wait, otherwise it waits until something comes.
    int minimumBytesToRead;
    /// One number with two uses, 0..255: VTIME, the wait of a single read in tenths of a second, and the
    /// deadline of SerialPort::readData() and of writes in whole seconds, where 0 means none.
    int timeout = 0;
    ParityType parityType = ParityType::none;
    bool sendTwoStopBits = false;
    DataBitsSize dataBitsSize = DataBitsSize::bits8;
    bool useHardwareFlowControl = false;
    bool useSoftwareFlowControl = false;
    /// Whether the system may rewrite outgoing bytes (line ends and the like).
    bool processOutput = false;
};

}  // namespace velmorindal
