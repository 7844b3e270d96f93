#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "Child.h"
#include "RawHost.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string simulator = VELMORINDAL_SIMULATOR_PROGRAM;

class Program : public testing::Test {
  protected:
    TemporaryDirectory directory_;
    const std::string port_ = directory_.path() / "cu.usbmodem-simulated";
};

TEST_F(Program, SaysWhereItServesAndAnswers) {
    const Child program{{simulator, directory_.path()}, STDOUT_FILENO};
    EXPECT_EQ(program.readLine(), port_);
    EXPECT_EQ(RawHost{port_}.ask(query('s'), 5), frame('r', 's', {1}));
}

TEST_F(Program, OnAnInterruptPrintsWhatWasStoredAndRemovesWhatItMade) {
    Child program{{simulator, directory_.path()}, STDOUT_FILENO};
    program.readLine();
    RawHost{port_}.ask(frame('c', 'p', {0}) + query('w'), 9);

    program.signal(SIGINT);

    EXPECT_EQ(program.readLine(), "Protocol: Gazell");
    EXPECT_EQ(program.readLine(), "Output path: USB");
    EXPECT_THAT(program.readAll(), HasSubstr("Times stored: 1\n"));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(Program, OnTerminationSaysThatNothingWasStored) {
    Child program{{simulator, directory_.path()}, STDOUT_FILENO};
    program.readLine();
    program.signal(SIGTERM);
    EXPECT_EQ(program.readAll(), "Nothing was stored.\n");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(Program, OfAMissingDirectoryTheSystemsErrorIsWritten) {
    Child program{{simulator, directory_.path() / "missing"}, STDERR_FILENO};
    const std::string text = program.readAll();
    EXPECT_THAT(text, StartsWith("velmorindal-simulator: cannot make the link "));
    EXPECT_THAT(text, HasSubstr("No such file or directory\n"));
    EXPECT_EQ(program.wait(), 1);
}

TEST_F(Program, OfANameThatIsTakenTheSystemsErrorIsWritten) {
    const Child first{{simulator, directory_.path()}, STDOUT_FILENO};
    first.readLine();
    Child second{{simulator, directory_.path()}, STDERR_FILENO};
    EXPECT_THAT(second.readAll(), HasSubstr("File exists\n"));
    EXPECT_EQ(second.wait(), 1);
    EXPECT_EQ(RawHost{port_}.ask(query('s'), 5), frame('r', 's', {1}));
}

TEST_F(Program, TalksToAnIndependentSerialLibrary) {
    const Child program{{simulator, directory_.path()}, STDOUT_FILENO};
    program.readLine();
    const std::string script = R"(
import serial, sys
port = serial.Serial(sys.argv[1], 115200, timeout=120, exclusive=True)
def ask(request, length):
    port.write(request)
    return port.read(length).hex()
print(ask(b"cbv\x00", 20))
print(ask(b"cbd\x0b" + bytes(range(11)), 15))
print(ask(b"cbd\x00", 15))
print(ask(b"cbt\x01\x02", 5), port.read(12).hex()[:8])
)";
    Child python{{"/usr/bin/python3", "-c", script, port_}, STDOUT_FILENO};
    EXPECT_EQ(python.readAll(),
              "7262761056656c6d6f72696e64616c20312e314d\n"
              "7262640b000102030405060708090a\n"
              "7262640b000102030405060708090a\n"
              "7262740102 72627408\n");
    EXPECT_EQ(python.wait(), 0);
}

}  // namespace
}  // namespace velmorindal
