#include "ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

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

pid_t start(std::vector<std::string> arguments, const Pipe& input, const Pipe& output) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input.readEnd, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output.writeEnd, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output.writeEnd, STDERR_FILENO);
    pid_t process = -1;
    const int failure =
        ::posix_spawnp(&process, pointers.front(), &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) {
        throw std::system_error{failure, std::generic_category(), arguments.front()};
    }
    return process;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    // `timeout` ends the program, so that no wait below can last forever.
    std::vector<std::string> bounded{"timeout", "--kill-after=5", "300"};
    bounded.insert(bounded.end(), arguments.begin(), arguments.end());
    const Pipe input;
    const Pipe output;
    process_ = start(std::move(bounded), input, output);
    ::close(input.readEnd);
    ::close(output.writeEnd);
    input_ = input.writeEnd;
    said_ = output.readEnd;
}

ChildProcess::~ChildProcess() {
    closeInput();
    if (process_ != -1) {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
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
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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
