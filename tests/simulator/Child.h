#pragma once

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "OwnedDescriptor.h"
#include "RawHost.h"

namespace velmorindal {

/// A child process whose standard output or standard error is read here. Killed if it still runs when this is
/// destroyed.
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

}  // namespace velmorindal
