// Measures one query and its answer over a pseudo-terminal in several ways: a bare write and read of the same
// bytes, the exchange of the session, QSerialPort and Boost.Asio. Two more have the system calls that the
// session's exchange needs: reading the header first, since it says how much follows; and also reading the
// line's attributes before the write, checking the device's node before every read, and waiting with a
// deadline. QSerialPort and Boost.Asio have the same deadline; Boost.Asio is also measured without one. The
// ways alternate, so that other load on the machine affects all of them; the figures are medians.

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QSerialPort>
#include <algorithm>
#include <array>
#include <boost/asio.hpp>
#include <chrono>
#include <cstdio>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "DongleProbe.h"
#include "ExchangePeer.h"
#include "ImmediateDispatch.h"
#include "PosixSystem.h"
#include "VCVersion.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

constexpr int deadlineMilliseconds = 2000;
constexpr int rounds = 120;
constexpr int exchangesInARound = 500;
constexpr std::array<std::uint8_t, ExchangePeer::queryLength> versionQuery{'c', 'b', 'v', 0};

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error{what};
    }
}

struct Contender {
    const char* name;
    std::function<void()> exchange;
    std::vector<double> microseconds = {};
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void writeBare(int descriptor) {
    require(::write(descriptor, versionQuery.data(), versionQuery.size()) == std::ssize(versionQuery),
            "short write");
}

template <typename BeforeARead>
void readBare(int descriptor, std::span<std::uint8_t> bytes, BeforeARead beforeARead) {
    while (!bytes.empty()) {
        beforeARead();
        const auto count = ::read(descriptor, bytes.data(), bytes.size());
        require(count > 0, "no answer");
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

void exchangeBare(int descriptor) {
    writeBare(descriptor);
    std::array<std::uint8_t, ExchangePeer::answerLength> answer{};
    readBare(descriptor, answer, [] {});
}

void exchangeBareHeaderFirst(int descriptor) {
    writeBare(descriptor);
    std::array<std::uint8_t, ExchangePeer::answerLength> answer{};
    readBare(descriptor, std::span{answer}.first(VelmorindalCommand::HeaderSize), [] {});
    readBare(descriptor, std::span{answer}.subspan(VelmorindalCommand::HeaderSize), [] {});
}

void exchangeBareWithEveryCall(int descriptor) {
    termios attributes{};
    require(::tcgetattr(descriptor, &attributes) == 0, "attributes");
    writeBare(descriptor);
    const auto lookAtTheNode = [descriptor] {
        struct stat status {};
        require(::fstat(descriptor, &status) == 0 && status.st_nlink == 1, "no node");
    };
    const auto waitForTheHeader = [&] {
        lookAtTheNode();
        pollfd line{.fd = descriptor, .events = POLLIN, .revents = 0};
        require(::poll(&line, 1, deadlineMilliseconds) > 0, "no answer");
    };
    std::array<std::uint8_t, ExchangePeer::answerLength> answer{};
    readBare(descriptor, std::span{answer}.first(VelmorindalCommand::HeaderSize), waitForTheHeader);
    readBare(descriptor, std::span{answer}.subspan(VelmorindalCommand::HeaderSize), lookAtTheNode);
}

void exchangeOurs(VelmorindalSwitch& velmorindal) {
    const auto answer = velmorindal.queryDevice('v');
    require(answer && dynamic_cast<const VCVersion&>(*answer)._versionString == "Velmorindal 1.1M",
            "wrong answer");
}

void exchangeQt(QSerialPort& port) {
    port.write(reinterpret_cast<const char*>(versionQuery.data()), std::ssize(versionQuery));
    QByteArray answer;
    while (answer.size() < static_cast<qsizetype>(ExchangePeer::answerLength)) {
        require(port.waitForReadyRead(deadlineMilliseconds), "no answer");
        answer += port.readAll();
    }
}

void exchangeAsioWithADeadline(boost::asio::io_context& context, boost::asio::serial_port& port) {
    boost::asio::write(port, boost::asio::buffer(versionQuery));
    std::array<std::uint8_t, ExchangePeer::answerLength> answer{};
    bool whole = false;
    boost::asio::async_read(port, boost::asio::buffer(answer),
                            [&](const boost::system::error_code& error, std::size_t) { whole = !error; });
    context.restart();
    context.run_for(std::chrono::milliseconds{deadlineMilliseconds});
    require(whole, "no answer");
}

void exchangeAsio(boost::asio::serial_port& port) {
    boost::asio::write(port, boost::asio::buffer(versionQuery));
    std::array<std::uint8_t, ExchangePeer::answerLength> answer{};
    boost::asio::read(port, boost::asio::buffer(answer));
}

void run() {
    const ExchangePeer barePeer;
    const ExchangePeer ourPeer;
    const ExchangePeer qtPeer;
    const ExchangePeer asioPeer;
    const ExchangePeer foreverPeer;

    const int bare = ::open(barePeer.path().c_str(), O_RDWR | O_NOCTTY);
    require(bare != -1, "open");
    // Sets the time limit of the session's reads: one that can time out costs the system more than one
    // that cannot.
    termios attributes{};
    require(::tcgetattr(bare, &attributes) == 0, "attributes");
    attributes.c_cc[VMIN] = 0;
    attributes.c_cc[VTIME] = 2;
    require(::tcsetattr(bare, TCSANOW, &attributes) == 0, "attributes");

    ImmediateDispatch dispatch;
    PosixSystem system;
    VelmorindalSwitch velmorindal{dispatch, system};
    auto ourPort = std::make_shared<SerialPort>(ourPeer.path(), system);
    ourPort->openPort();
    ourPort->setSettings(dongleLine);
    velmorindal.serialPort = ourPort;

    QSerialPort qtPort{QString::fromStdString(qtPeer.path())};
    require(qtPort.open(QIODevice::ReadWrite), "QSerialPort open");
    qtPort.setBaudRate(QSerialPort::Baud115200);

    boost::asio::io_context context;
    boost::asio::serial_port asioPort{context, asioPeer.path()};
    asioPort.set_option(boost::asio::serial_port_base::baud_rate{115200});
    boost::asio::serial_port foreverPort{context, foreverPeer.path()};
    foreverPort.set_option(boost::asio::serial_port_base::baud_rate{115200});

    Contender bareCalls{"bare write and read", [&] { exchangeBare(bare); }};
    Contender headerFirst{"bare, the header first", [&] { exchangeBareHeaderFirst(bare); }};
    Contender everyCall{"bare, with every call", [&] { exchangeBareWithEveryCall(bare); }};
    Contender ours{"session exchange", [&] { exchangeOurs(velmorindal); }};
    Contender qt{"QSerialPort", [&] { exchangeQt(qtPort); }};
    Contender asio{"Boost.Asio", [&] { exchangeAsioWithADeadline(context, asioPort); }};
    Contender endless{"Boost.Asio, no deadline", [&] { exchangeAsio(foreverPort); }};
    const std::array contenders{&bareCalls, &headerFirst, &everyCall, &ours, &qt, &asio, &endless};
    for (int round = 0; round < rounds; ++round) {
        for (Contender* const contender : contenders) {
            const auto start = std::chrono::steady_clock::now();
            for (int count = 0; count < exchangesInARound; ++count) {
                contender->exchange();
            }
            const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
            contender->microseconds.push_back(taken.count() / exchangesInARound);
        }
    }
    for (const Contender* const contender : contenders) {
        const double microseconds = median(contender->microseconds);
        std::printf("%-24s %8.2f us  %5.2f times bare  %5.2f times bare with every call\n", contender->name,
                    microseconds, microseconds / median(bareCalls.microseconds),
                    microseconds / median(everyCall.microseconds));
    }
    ourPort->closePort();
    ::close(bare);
}

}  // namespace
}  // namespace velmorindal

int main(int argc, char** argv) {
    const QCoreApplication application{argc, argv};
    try {
        velmorindal::run();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
    return 0;
}
