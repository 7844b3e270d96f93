#include "DongleTrouble.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "Hexadecimal.h"
#include "Print.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

constexpr const char* replug = " Unplug the dongle and plug it in again.";
/// The port of a candidate that did not answer stays open until the program ends.
constexpr const char* replugAndRestart = " Unplug the dongle, plug it in again and start this program again.";

std::string systemText(int systemError) {
    return std::generic_category().message(systemError);
}

/// Bytes that a device sent, in quotes, with everything escaped that could affect a terminal.
std::string printable(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte > 0x7E) {
            result += "\\x" + hexadecimal(byte);
        } else {
            result += character == '"' || character == '\\' ? "\\" : "";
            result += character;
        }
    }
    return result + '"';
}

std::string_view nameOf(fs::file_type kind) {
    switch (kind) {
        case fs::file_type::directory:
            return "a directory";
        case fs::file_type::regular:
            return "a file";
        case fs::file_type::fifo:
            return "a pipe";
        case fs::file_type::socket:
            return "a socket";
        case fs::file_type::block:
            return "a disk";
        default:
            return "something else";
    }
}

std::string groupName(gid_t group) {
    std::vector<char> texts(16'384);
    ::group entry{};
    ::group* found = nullptr;
    if (::getgrgid_r(group, &entry, texts.data(), texts.size(), &found) != 0 || found == nullptr) {
        return std::to_string(group);
    }
    return found->gr_name;
}

}  // namespace

DongleTrouble::DongleTrouble(std::string path, System& system) : path_{std::move(path)}, system_{system} {}

void DongleTrouble::notASerialPort() const {
    std::error_code error;
    const fs::file_type kind = fs::status(path_, error).type();
    if (kind == fs::file_type::none || kind == fs::file_type::not_found) {
        warn(path_ + ": cannot be looked at: " + systemText(error.value()) + "." +
             (error.value() == EACCES ? " Ask for access to its directory." : replug));
    } else {
        warn(path_ + ": not opened: it is " + std::string{nameOf(kind)} + " and not a serial port.");
    }
}

void DongleTrouble::notOpened(int systemError) const {
    std::string line = path_ + ": could not be opened: " + systemText(systemError) + ".";
    switch (systemError) {
        case EACCES:
        case EPERM:
            line += wayToGetAccess();
            break;
        case EBUSY:
            line += wayToGetItFree();
            break;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
            line += " Close this program and start it again.";
            break;
        default:
            line += replug;
    }
    warn(line);
}

std::string DongleTrouble::wayToGetAccess() const {
    struct stat node {};
    if (::stat(path_.c_str(), &node) != 0 || (node.st_mode & S_IRGRP) == 0 || (node.st_mode & S_IWGRP) == 0) {
        return " No group has access to it: install this program's device rule, then plug the dongle in "
               "again.";
    }
    const std::string group = groupName(node.st_gid);
    return " It belongs to the group " + group + ": join it with 'sudo adduser \"$USER\" " + group +
           "', then log out and in again.";
}

std::string DongleTrouble::wayToGetItFree() const {
    const auto holder = system_.holderOf(path_);
    if (!holder) {
        return " Another program holds it: 'sudo fuser -v " + path_ + "' names it.";
    }
    if (holder->process == ::getpid()) {
        return " This program holds it since an earlier attempt: close it and start it again.";
    }
    return " The program " + printable(holder->program) + ", process " + std::to_string(holder->process) +
           ", holds it: end it, or wait until it lets go.";
}

void DongleTrouble::stillBeingClosed() const {
    warn(path_ +
         ": cannot be opened yet: the port is still being closed, by an earlier run of this program or by "
         "another one. Wait, or unplug the dongle, which ends that at once.");
}

void DongleTrouble::queryNotWritten(std::ptrdiff_t taken, std::size_t asked, int systemError) const {
    const bool noRoom = systemError == 0 || systemError == EAGAIN;
    warn(path_ + ": asked for its version: it took only " +
         std::to_string(std::max(taken, std::ptrdiff_t{0})) + " of " + std::to_string(asked) + " bytes" +
         (noRoom ? "" : ": " + systemText(systemError)) + "." + replugAndRestart);
}

void DongleTrouble::noAnswer(std::span<const std::uint8_t> received) const {
    const std::string_view text{reinterpret_cast<const char*>(received.data()), received.size()};
    warn(path_ + ": asked for its version: " +
         (text.empty() ? "no answer came." : "only the bytes " + printable(text) + " came.") +
         replugAndRestart);
}

void DongleTrouble::unplugged() const {
    warn(path_ + ": asked for its version: it was unplugged. Plug the dongle in again.");
}

void DongleTrouble::otherDevice(std::string_view answer) const {
    warn(path_ + ": asked for its version: it is no dongle but another device, which said " +
         printable(answer) + ".");
}

}  // namespace velmorindal
