#include "Announcer.h"

namespace velmorindal {

Announcer::Announcer(QWidget* parent) : QWidget{parent} {
    // It must be on the screen, but can be neither seen nor clicked.
    setGeometry(0, 0, 1, 1);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    for (SpokenText*& text : texts_) {
        text = new SpokenText{this};
        text->setGeometry(0, 0, 1, 1);
        text->hide();
    }
}

void Announcer::say(const QString& text) {
    SpokenText& spoken = *texts_.at(next_);
    next_ = (next_ + 1) % texts_.size();
    spoken.hide();
    spoken.setAccessibleName(text);
    spoken.show();
}

}  // namespace velmorindal
