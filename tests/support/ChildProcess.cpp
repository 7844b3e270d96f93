#include "ChildProcess.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include "ForkedChild.h"

namespace velmorindal {
namespace {

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error{errno, std::generic_category(), "pipe2"};
        }
        readEnd = ends[0];
        writeEnd = ends[1];
    }

    int readEnd = -1;
    int writeEnd = -1;
};

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const Pipe input;
    const Pipe output;
    // Its alarm outlives the exec, so that no wait below can last forever.
    process_ = startChild([&] {
        ::dup2(input.readEnd, STDIN_FILENO);
        ::dup2(output.writeEnd, STDOUT_FILENO);
        ::dup2(output.writeEnd, STDERR_FILENO);
        return ::execvp(pointers.front(), pointers.data());
    });
    ::close(input.readEnd);
    ::close(output.writeEnd);
    input_ = input.writeEnd;
    said_ = output.readEnd;
}

ChildProcess::~ChildProcess() {
    closeInput();
    if (process_ != -1) {
        ::kill(process_, SIGTERM);
        waitForChild(process_);
    }
    ::close(said_);
}

bool ChildProcess::says(std::string_view text) {
    while (output_.find(text) == std::string::npos) {
        if (!readMore()) {
            return false;
        }
    }
    return true;
}

void ChildProcess::signal(int number) const {
    ::kill(process_, number);
}

int ChildProcess::finish() {
    closeInput();
    while (readMore()) {
    }
    return waitForChild(std::exchange(process_, -1));
}

bool ChildProcess::readMore() {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(said_, buffer.data(), buffer.size());
    if (count <= 0) {
        return false;
    }
    output_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

void ChildProcess::closeInput() {
    if (input_ != -1) {
        ::close(input_);
        input_ = -1;
    }
}

std::vector<std::string> python(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"/usr/bin/python3", "-c", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

}  // namespace velmorindal
