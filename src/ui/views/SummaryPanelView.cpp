#include "SummaryPanelView.h"

#include "Reason.h"
#include "TwoDecimals.h"

namespace velmorindal {
namespace {

std::string enabledText(bool enabled) {
    return enabled ? "ENABLED" : "DISABLED";
}

}  // namespace

SummaryPanelView::SummaryPanelView(const VelmorindalSwitch& model) : velmorindal{model} {}

std::vector<SummaryPanelView::Row> SummaryPanelView::rows() const {
    const bool longShort = velmorindal.outputMode.get() == OutputMode::LongShort;
    std::vector<Row> rows;
    rows.push_back({.label = "Mode:", .value = longShort ? "Long/short mode" : "Direct mode"});
    if (longShort) {
        rows.push_back({.label = "Long/Short outputs:",
                        .value = "Short output: " + enabledText(velmorindal.shortEnabled.get()) +
                                 "; Long output: " + enabledText(velmorindal.longEnabled.get())});
    }
    rows.push_back({.label = "Output:", .value = std::string{pathString()}});
    if (velmorindal.outputPath.get() != OutputPath::Switch) {
        // This text is fixed on purpose, whatever keys were chosen.
        rows.push_back({.label = "Output Keystroke:", .value = "Short: Space; Long: Enter"});
    }
    if (longShort) {
        rows.push_back({.label = "Long/Short cutoff:", .value = twoDecimals(velmorindal.cutoff.get()) + "s"});
    }
    rows.push_back({.label = "Clarity:", .value = twoDecimals(velmorindal.clarity.get())});
    return rows;
}

const std::vector<SummaryPanelView::Row>& SummaryPanelView::widestRows() {
    static const std::vector<Row> rows{
        {.label = "Mode:", .value = "Long/short mode"},
        {.label = "Long/Short outputs:", .value = "Short output: DISABLED; Long output: DISABLED"},
        {.label = "Output:", .value = "Bluetooth Keyboard"},
        {.label = "Output Keystroke:", .value = "Short: Space; Long: Enter"},
        {.label = "Long/Short cutoff:", .value = "10.00s"},
        {.label = "Clarity:", .value = "0.00"}};
    return rows;
}

std::string_view SummaryPanelView::pathString() const {
    switch (velmorindal.outputPath.get()) {
        case OutputPath::USBKeyboard:
            return "USB Keyboard";
        case OutputPath::BTKeyboard:
            return "Bluetooth Keyboard";
        case OutputPath::Switch:
            break;
    }
    // Direct mode closes the jack of the long output.
    const bool usesShort =
        velmorindal.outputMode.get() == OutputMode::LongShort && velmorindal.shortEnabled.get();
    if (!usesShort) {
        return "Switch Jack #2";
    }
    return velmorindal.longEnabled.get() ? "Both switch jacks" : "Switch Jack #1";
}

std::string_view SummaryPanelView::statusText() const {
    if (velmorindal.connectionState.get() == ConnectionStatus::writing) {
        return writingText;
    }
    if (velmorindal.justSaved.get()) {
        return writtenText;
    }
    return "";
}

std::string_view SummaryPanelView::lastReason() const {
    return reasonIsCutoff_ && velmorindal.cutoffFitsDevice() ? std::string_view{} : reason_;
}

void SummaryPanelView::writeEndedWith(std::string_view dialogText) {
    reason_ = asReason(dialogText);
    reasonIsCutoff_ = false;
}

void SummaryPanelView::cutoffRefused(std::string_view dialogText) {
    reason_ = asReason(dialogText);
    reasonIsCutoff_ = true;
}

void SummaryPanelView::forgetReason() {
    reason_.clear();
}

std::optional<ProgressBar> SummaryPanelView::progressBar() const {
    if (velmorindal.connectionState.get() != ConnectionStatus::writing) {
        return std::nullopt;
    }
    return ProgressBar{.value = velmorindal.readWriteProgress.get(),
                       .maxValue = 5.0,
                       .backgroundEnabled = true,
                       .backgroundColor = colors::veryLightGrey,
                       .foregroundColor = colors::green};
}

}  // namespace velmorindal
