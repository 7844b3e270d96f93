#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmorindal {

/// Asks the user for a file. Main thread only.
class FilePanel {
  public:
    /// Receives the UTF-8 path of the chosen file, or nothing when the panel was dismissed. Called once, on
    /// the main thread, during the call that asks or later.
    using Completion = std::function<void(std::optional<std::string>)>;

    FilePanel() = default;
    FilePanel(const FilePanel&) = delete;
    FilePanel& operator=(const FilePanel&) = delete;
    virtual ~FilePanel() = default;

    /// Asks for an existing file. `allowedFileTypes` are file name extensions without their dot.
    virtual void chooseFileToOpen(const std::vector<std::string>& allowedFileTypes,
                                  Completion completion) = 0;

    /// The name that is suggested for a new file.
    static constexpr std::string_view suggestedName = "Velmorindal settings.xml";

    /// Asks where to save a file, which need not exist. Suggests `suggestedName` in the user's
    /// documents folder.
    virtual void chooseFileToSave(const std::vector<std::string>& allowedFileTypes,
                                  Completion completion) = 0;
};

}  // namespace velmorindal
