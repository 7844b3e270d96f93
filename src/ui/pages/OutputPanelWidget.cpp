#include "OutputPanelWidget.h"

#include <QVBoxLayout>
#include <algorithm>

#include "KeyChoiceWidget.h"
#include "Look.h"
#include "RadioGroup.h"
#include "TextLabel.h"

namespace velmorindal {

OutputPanelWidget::OutputPanelWidget(OutputPanelView& view) : view_{view} {
    addText(OutputPanelView::question);
    paths_ = new RadioGroup<OutputPath>{OutputPanelView::question, OutputPanelView::pathChoices,
                                        view.velmorindal.outputPath};
    column().addWidget(paths_);
    column().addSpacing(look::spacing());
    for (const OutputPanelView::KeyChoice& choice : OutputPanelView::allKeyChoices) {
        auto* keyChoice = new KeyChoiceWidget{view, choice};
        keyChoices_.push_back(keyChoice);
        column().addWidget(keyChoice);
        mayBeHidden(keyChoice);
    }
    column().addStretch();
    refresh();
}

QWidget* OutputPanelWidget::firstControl() const {
    return paths_->entry();
}

void OutputPanelWidget::refresh() {
    paths_->refresh();
    const auto shown = view_.keyChoices();
    for (KeyChoiceWidget* keyChoice : keyChoices_) {
        keyChoice->refresh();
        setShown(keyChoice, std::ranges::find(shown, keyChoice->choice()) != shown.end());
    }
}

}  // namespace velmorindal
