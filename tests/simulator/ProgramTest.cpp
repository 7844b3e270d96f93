#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "RawHost.h"
#include "simulator/OwnedDescriptor.h"
#include "support/TemporaryDirectory.h"

namespace velmorindal {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string simulator = VELMORINDAL_SIMULATOR_PROGRAM;

/// A child process whose standard output or standard error is read here. Killed when it is dropped while it
/// runs.
class Child {
  public:
    Child(const std::vector<std::string>& command, int stream) {
        std::array<int, 2> ends{};
        check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno);
        reader_ = OwnedDescriptor{ends[0]};
        const OwnedDescriptor writer{ends[1]};
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (const std::string& argument : command) {
            arguments.push_back(const_cast<char*>(argument.c_str()));
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions{};
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, writer.get(), stream);
        const int error =
            ::posix_spawn(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        check(error);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
    }

    /// Up to the newline; what there is when the output or patience ends first.
    std::string readLine() const {
        std::string line;
        char character = 0;
        while (readOne(character) && character != '\n') {
            line += character;
        }
        return line;
    }
    std::string readAll() const {
        std::string text;
        char character = 0;
        while (readOne(character)) {
            text += character;
        }
        return text;
    }
    void signal(int number) const { ::kill(process_, number); }
    /// The exit status, or nothing where a signal ended the process.
    std::optional<int> wait() {
        int status = 0;
        ::waitpid(std::exchange(process_, -1), &status, 0);
        return WIFEXITED(status) ? std::optional{WEXITSTATUS(status)} : std::nullopt;
    }

  private:
    static void check(int error) {
        if (error != 0) {
            throw std::system_error{error, std::generic_category(), "cannot start the program"};
        }
    }
    bool readOne(char& character) const {
        pollfd entry{.fd = reader_.get(), .events = POLLIN, .revents = 0};
        const auto patience = std::chrono::milliseconds{RawHost::patience}.count();
        return ::poll(&entry, 1, static_cast<int>(patience)) > 0 && ::read(reader_.get(), &character, 1) == 1;
    }

    OwnedDescriptor reader_;
    pid_t process_ = -1;
};

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

TEST_F(Program, OnAnInterruptTellsWhatWasStoredAndRemovesWhatItMade) {
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
