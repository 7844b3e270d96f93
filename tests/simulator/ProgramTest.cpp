#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "ChildProcess.h"
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

TEST_F(Program, SaysWhereItServesAndOnAnInterruptPrintsWhatWasStoredAndRemovesWhatItMade) {
    ChildProcess program{{simulator, directory_.path()}};
    ASSERT_TRUE(program.says(port_));
    RawHost{port_}.ask(frame('c', 'p', {0}) + query('w'), 9);

    program.signal(SIGINT);

    EXPECT_EQ(program.finish(), 0);
    EXPECT_THAT(program.output(), StartsWith(port_ + "\nProtocol: Gazell\nOutput path: USB\n"));
    EXPECT_THAT(program.output(), HasSubstr("Times stored: 1\n"));
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(Program, OfAMissingDirectoryTheSystemsErrorIsWritten) {
    ChildProcess program{{simulator, directory_.path() / "missing"}};
    EXPECT_EQ(program.finish(), 1);
    EXPECT_THAT(program.output(), StartsWith("velmorindal-simulator: cannot make the link "));
    EXPECT_THAT(program.output(), HasSubstr("No such file or directory\n"));
}

TEST_F(Program, TalksToAnIndependentSerialLibrary) {
    ChildProcess program{{simulator, directory_.path()}};
    ASSERT_TRUE(program.says(port_));
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
    ChildProcess host{python(script, {port_})};
    EXPECT_EQ(host.finish(), 0);
    EXPECT_EQ(host.output(),
              "7262761056656c6d6f72696e64616c20312e314d\n"
              "7262640b000102030405060708090a\n"
              "7262640b000102030405060708090a\n"
              "7262740102 72627408\n");
}

}  // namespace
}  // namespace velmorindal
