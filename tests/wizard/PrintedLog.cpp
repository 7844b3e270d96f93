#include "PrintedLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace velmorindal {

PrintedLog::PrintedLog()
    : file_{::open((directory_.path() / "log").c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600)},
      before_{::dup(STDOUT_FILENO)} {
    if (file_ < 0 || before_ < 0 || ::dup2(file_, STDOUT_FILENO) < 0) {
        throw std::runtime_error{"cannot take standard output into a file"};
    }
}

PrintedLog::~PrintedLog() {
    ::dup2(before_, STDOUT_FILENO);
    ::close(before_);
    ::close(file_);
}

void PrintedLog::clear() const {
    if (::ftruncate(file_, 0) != 0) {
        throw std::runtime_error{"cannot empty the log"};
    }
}

std::string PrintedLog::text() const {
    std::ostringstream text;
    text << std::ifstream{directory_.path() / "log"}.rdbuf();
    return text.str();
}

}  // namespace velmorindal
