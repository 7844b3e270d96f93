#include "RecordFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "Print.h"

namespace velmorindal {
namespace {

/// @returns 0, or the reason why not all was written.
int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return written == 0 ? ENOSPC : errno;
        }
    }
    return 0;
}

}  // namespace

RecordFile::RecordFile(std::string path)
    : path_{std::move(path)},
      // A pipe without a reader must not block the program.
      descriptor_{
          ::open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY | O_NONBLOCK | O_CLOEXEC, 0666)} {
    if (descriptor_ == -1) {
        throw std::system_error{errno, std::generic_category(), "cannot write the record " + path_};
    }
}

RecordFile::~RecordFile() {
    if (descriptor_ != -1) {
        ::close(descriptor_);
    }
}

void RecordFile::append(std::string_view line) {
    if (descriptor_ == -1) {
        return;
    }
    const std::string text = std::string{line} + '\n';
    const int reason = writeAll(descriptor_, text);
    if (reason == 0) {
        length_ += static_cast<off_t>(text.size());
        return;
    }
    // Removes the incomplete line, so that the record can be read. Not every file can be truncated, and a
    // failure does no further harm.
    [[maybe_unused]] const int ignored = ::ftruncate(descriptor_, length_);
    ::close(std::exchange(descriptor_, -1));
    warn("The record " + path_ + " ends here: " + std::generic_category().message(reason) +
         ". Everything else goes on.");
}

}  // namespace velmorindal
