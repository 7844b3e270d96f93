#include "ModePanelWidget.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QVBoxLayout>
#include <cstddef>

#include "Look.h"
#include "RadioGroup.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

ModePanelWidget::ModePanelWidget(ModePanelView& view) : view_{view} {
    addText(ModePanelView::introduction);
    addExplanations();
    column().addSpacing(look::spacing());
    addText(ModePanelView::question);
    modes_ = new RadioGroup<OutputMode>{ModePanelView::question, ModePanelView::modeChoices,
                                        view.velmorindal.outputMode};
    column().addWidget(modes_);
    addCheckBoxes();
    column().addStretch();
    refresh();
}

QWidget* ModePanelWidget::firstControl() const {
    return modes_->entry();
}

void ModePanelWidget::addExplanations() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * look::spacing());
    grid->setVerticalSpacing(look::spacing() / 2);
    grid->setColumnStretch(1, 1);
    for (const ModePanelView::Explanation& explanation : ModePanelView::explanations) {
        const int row = grid->rowCount();
        auto* label = new TextLabel{TextRole::Label, explanation.label};
        grid->addWidget(label, row, 0, Qt::AlignTop);
        grid->addWidget(new TextLabel{TextRole::Body, explanation.text}, row, 1, Qt::AlignTop);
    }
    column().addLayout(grid);
}

void ModePanelWidget::addCheckBoxes() {
    indented_ = new QWidget;
    auto* boxes = new QVBoxLayout{indented_};
    boxes->setContentsMargins(3 * look::spacing(), 0, 0, 0);
    boxes->setSpacing(look::spacing() / 2);
    for (std::size_t i = 0; i < checkBoxes_.size(); ++i) {
        const ModePanelView::CheckBox& described = ModePanelView::checkBoxes.at(i);
        auto* box = new QCheckBox{toQString(described.label)};
        boxes->addWidget(box, 0, Qt::AlignLeft);
        checkBoxes_.at(i) = box;
        connect(box, &QCheckBox::toggled, this, [this, flag = described.flag](bool checked) {
            Published<bool>& enabled = view_.velmorindal.*flag;
            if (enabled.get() != checked) {
                enabled = checked;
            }
        });
    }
    column().addWidget(indented_);
    mayBeHidden(indented_);
}

void ModePanelWidget::refresh() {
    modes_->refresh();
    for (std::size_t i = 0; i < checkBoxes_.size(); ++i) {
        checkBoxes_.at(i)->setChecked((view_.velmorindal.*ModePanelView::checkBoxes.at(i).flag).get());
    }
    setShown(indented_, view_.showsCheckBoxes());
}

}  // namespace velmorindal
