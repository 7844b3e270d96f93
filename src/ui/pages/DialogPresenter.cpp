#include "DialogPresenter.h"

#include <algorithm>

namespace velmorindal {

DialogPresenter::DialogPresenter(ContainerView& view, QWidget& window) : view_{view}, window_{window} {}

void DialogPresenter::refresh() {
    const auto raised = view_.raisedDialogs();
    if (shown_ != nullptr) {
        const auto same =
            std::ranges::find_if(raised, [this](const Dialog& dialog) { return dialog.id == shown_->id(); });
        if (same != raised.end()) {
            shown_->showTexts(*same);
            return;
        }
        shown_->withdraw();
        shown_ = nullptr;
    }
    if (!raised.empty()) {
        open(raised.front());
    }
}

void DialogPresenter::open(const Dialog& dialog) {
    shown_ = new MessageDialog{dialog,
                               [this, id = dialog.id](const DialogButton& button) {
                                   shown_ = nullptr;
                                   view_.dismiss(id);
                                   button.action();
                               },
                               &window_};
    shown_->setAttribute(Qt::WA_DeleteOnClose);
    shown_->open();
}

}  // namespace velmorindal
