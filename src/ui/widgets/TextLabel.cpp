#include "ui/widgets/TextLabel.h"

#include <QEvent>

#include "ui/widgets/Look.h"
#include "ui/widgets/ToQt.h"

namespace velmorindal {

TextLabel::TextLabel(TextRole role, QWidget* parent) : QLabel{parent}, role_{role} {
    setTextFormat(Qt::PlainText);
    setWordWrap(role != TextRole::Label && role != TextRole::Plain);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    followApplicationFont();
}

TextLabel::TextLabel(TextRole role, std::string_view utf8, QWidget* parent) : TextLabel{role, parent} {
    showText(utf8);
}

void TextLabel::showText(std::string_view utf8) {
    const QString wanted = toQString(utf8);
    if (text() != wanted) {
        setText(wanted);
    }
}

bool TextLabel::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) {
        followApplicationFont();
    }
    return QLabel::event(event);
}

void TextLabel::followApplicationFont() {
    switch (role_) {
        case TextRole::Title:
            setFont(look::titleFont());
            break;
        case TextRole::Body:
        case TextRole::Plain:
            setFont(look::bodyFont());
            break;
        case TextRole::Label:
            setFont(look::labelFont());
            break;
        case TextRole::Callout:
            setFont(look::calloutFont());
            break;
    }
}

}  // namespace velmorindal
