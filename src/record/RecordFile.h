#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace velmorindal {

/// A file that grows line by line. Each line goes to the system at once, so that it is kept when the program
/// is killed. Not safe from several threads.
class RecordFile {
  public:
    /// Creates the file, or empties an existing one.
    /// @throws std::system_error naming the path when the system refuses.
    explicit RecordFile(std::string path);
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;
    ~RecordFile();

    /// Appends `line` and a newline. The first line that cannot be written whole is removed and ends the
    /// file: later lines are dropped, and standard error says so once.
    void append(std::string_view line);

  private:
    const std::string path_;
    int descriptor_;
    /// Bytes in the whole lines.
    off_t length_ = 0;
};

}  // namespace velmorindal
