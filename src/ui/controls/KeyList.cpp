#include "KeyList.h"

#include <QWheelEvent>

#include "OutputPanelView.h"
#include "ToQt.h"

namespace velmorindal {

KeyList::KeyList(const QString& accessibleName) {
    setAccessibleName(accessibleName);
    for (const Choice<OutputKey>& entry : OutputPanelView::keyEntries()) {
        addItem(toQString(entry.label), static_cast<int>(entry.value));
    }
}

OutputKey KeyList::key() const {
    return static_cast<OutputKey>(currentData().toInt());
}

void KeyList::setKey(OutputKey key) {
    setCurrentIndex(findData(static_cast<int>(key)));
}

void KeyList::keyPressEvent(QKeyEvent* event) {
    const int before = currentIndex();
    QComboBox::keyPressEvent(event);
    if (currentIndex() != before) {
        emit stepped(currentText());
    }
}

void KeyList::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace velmorindal
