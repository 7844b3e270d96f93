#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>

#include "NodeHolder.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

template <typename Integer>
std::optional<Integer> numberIn(std::string_view text, int base = 10) {
    Integer value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc{} && rest == end ? std::optional{value} : std::nullopt;
}

std::optional<NodeHolder> holderWithNumber(pid_t process) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::ifstream file{folder + "/comm"};
    std::string program;
    if (!std::getline(file, program)) {
        return std::nullopt;
    }
    // The system cuts that name after 15 bytes; the command line usually has the whole one.
    std::ifstream arguments{folder + "/cmdline"};
    std::string command;
    std::getline(arguments, command, '\0');
    const std::string name = fs::path{command}.filename().string();
    return NodeHolder{.program = name.starts_with(program) ? name : program, .process = process};
}

/// Whether the lock's file, given as "major:minor:inode" with a hexadecimal device, is the node.
bool isTheNode(const std::string& file, const struct stat& node) {
    const std::size_t afterMajor = file.find(':');
    const std::size_t afterMinor = file.find(':', afterMajor + 1);
    if (afterMajor == std::string::npos || afterMinor == std::string::npos) {
        return false;
    }
    const std::string_view text = file;
    return numberIn<unsigned>(text.substr(0, afterMajor), 16) == major(node.st_dev) &&
           numberIn<unsigned>(text.substr(afterMajor + 1, afterMinor - afterMajor - 1), 16) ==
               minor(node.st_dev) &&
           numberIn<ino_t>(text.substr(afterMinor + 1)) == node.st_ino;
}

/// Works for every user: the owners of locks are public.
std::optional<NodeHolder> ownerOfTheLock(const struct stat& node) {
    std::ifstream locks{"/proc/locks"};
    for (std::string line; std::getline(locks, line);) {
        std::istringstream words{line};
        std::string number;
        std::string kind;
        std::string strictness;
        std::string access;
        pid_t process = 0;
        std::string file;
        if (words >> number >> kind >> strictness >> access >> process >> file && kind == "FLOCK" &&
            isTheNode(file, node)) {
            if (auto holder = holderWithNumber(process)) {
                return holder;
            }
        }
    }
    return std::nullopt;
}

bool hasOpen(const fs::path& process, const fs::path& node) {
    std::error_code unreadable;
    for (fs::directory_iterator entry{process / "fd", unreadable};
         !unreadable && entry != fs::directory_iterator{}; entry.increment(unreadable)) {
        // Compares names: access to the file itself may have to wait for another computer.
        if (fs::read_symlink(entry->path(), unreadable) == node) {
            return true;
        }
        unreadable.clear();
    }
    return false;
}

}  // namespace

std::optional<NodeHolder> findNodeHolder(const std::string& path) {
    struct stat node {};
    if (::stat(path.c_str(), &node) != 0) {
        return std::nullopt;
    }
    if (auto owner = ownerOfTheLock(node)) {
        return owner;
    }
    std::error_code unreadable;
    const fs::path name = fs::canonical(path, unreadable);
    if (name.empty()) {
        return std::nullopt;
    }
    for (fs::directory_iterator entry{"/proc", unreadable}; !unreadable && entry != fs::directory_iterator{};
         entry.increment(unreadable)) {
        const auto process = numberIn<pid_t>(entry->path().filename().native());
        if (process && process != ::getpid() && hasOpen(entry->path(), name)) {
            if (auto holder = holderWithNumber(*process)) {
                return holder;
            }
        }
    }
    return hasOpen("/proc/self", name) ? holderWithNumber(::getpid()) : std::nullopt;
}

}  // namespace velmorindal
