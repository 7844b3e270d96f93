#include "KeyChoiceWidget.h"

#include <QHBoxLayout>

#include "Announcer.h"
#include "KeyList.h"
#include "Look.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

KeyChoiceWidget::KeyChoiceWidget(OutputPanelView& view, const OutputPanelView::KeyChoice& choice)
    : view_{view}, choice_{choice}, keys_{new KeyList{toQString(choice.label)}} {
    auto* label = new TextLabel{TextRole::Body, choice.label};
    label->setBuddy(keys_);
    connect(keys_, &KeyList::currentIndexChanged, this, [this] {
        if (keys_->key() != view_.chosenKey(choice_)) {
            view_.chooseKey(choice_, keys_->key());
        }
    });

    connect(keys_, &KeyList::stepped, this, [this](const QString& entry) {
        if (auto* announcer = window()->findChild<Announcer*>()) {
            announcer->say(entry);
        }
    });

    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2 * look::spacing());
    row->addWidget(label, 1);
    row->addWidget(keys_, 1);
}

void KeyChoiceWidget::refresh() {
    keys_->setKey(view_.chosenKey(choice_));
}

}  // namespace velmorindal
