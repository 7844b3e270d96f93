#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace velmorindal {

/// Another program beside the test, with its standard input, output and error in the test's hands. It is
/// ended after five minutes at the latest, and when the object goes.
class ChildProcess {
  public:
    /// Starts `arguments`; the first is the program.
    explicit ChildProcess(std::vector<std::string> arguments);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Reads what the program says, on either stream, until `text` has appeared.
    ///
    /// @returns false when the program ended without saying it.
    bool says(std::string_view text);

    void signal(int number) const;

    /// Closes the program's standard input, waits for its end and returns its exit code, or minus the signal
    /// that ended it.
    int finish();

    /// All that the program has said so far.
    const std::string& output() const { return output_; }

  private:
    bool readMore();
    void closeInput();

    pid_t process_ = -1;
    int input_ = -1;
    int said_ = -1;
    std::string output_;
};

/// A Python program, in the interpreter that the system's packages belong to.
std::vector<std::string> python(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace velmorindal
