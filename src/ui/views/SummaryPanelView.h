#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ProgressBar.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {

/// The last page: the settings in words, then the progress and the result of the write. It does not change
/// the model. Main thread only.
class SummaryPanelView {
  public:
    struct Row {
        std::string label;
        std::string value;

        bool operator==(const Row&) const = default;
    };

    explicit SummaryPanelView(const VelmorindalSwitch& model);

    const VelmorindalSwitch& velmorindal;

    static constexpr std::string_view introduction =
        "You have configured your Velmorindal with the following parameters:";
    static constexpr std::string_view progressBarName = "Write progress";
    /// Device-independent pixels on every side of the page's content.
    static constexpr int contentInset = 30;

    /// The rows that are shown now, top to bottom.
    std::vector<Row> rows() const;

    /// The value of the row "Output:".
    std::string_view pathString() const;

    /// The longest possible summary, row by row: the page keeps room for it.
    static const std::vector<Row>& widestRows();

    /// The text under the rows; empty while there is nothing to say.
    std::string_view statusText() const;
    static constexpr std::string_view writingText = "Writing data...";
    static constexpr std::string_view writtenText =
        "Settings successfully written. Please restart your Velmorindal.";

    /// The text of the last failed write, of its warning or of a refused cutoff, shown so that it can be read
    /// after its dialog. Empty from the start of the next write on, and once a refused cutoff fits
    /// the device.
    std::string_view lastReason() const;
    /// Set the last reason from the text of a dialog.
    void writeEndedWith(std::string_view dialogText);
    void cutoffRefused(std::string_view dialogText);
    /// Clears the last reason, for a new write.
    void forgetReason();

    /// The bar under that text; only while writing.
    std::optional<ProgressBar> progressBar() const;

  private:
    std::string reason_;
    bool reasonIsCutoff_ = false;
};

}  // namespace velmorindal
