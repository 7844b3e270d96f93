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

enum class DataBitsSize { bits5, bits6, bits7, bits8 };

enum class ParityType { none, even, odd };

/// How a line is configured. Aggregate, so that call sites name what they set.
struct SerialSettings {
    BaudRate receiveRate;
    BaudRate transmitRate;
    /// VMIN: with 0 a read gives up after its wait, with more it goes on until something comes; 0..255.
    int minimumBytesToRead;
    /// One number with two uses: VTIME, the wait of a single read in tenths of a second, and the deadline of
    /// SerialPort::readData in whole seconds, where 0 means none; 0..255.
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
