#include "ui/widgets/TextLabel.h"

#include <QEvent>
#include <algorithm>

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
        heights_.clear();
        setText(wanted);
    }
}

QSize TextLabel::sizeHint() const {
    return wordWrap() ? wrappedHint(look::narrowestLineWidth()) : QLabel::sizeHint();
}

QSize TextLabel::minimumSizeHint() const {
    return wordWrap() ? wrappedHint(look::widestWordWidth()) : QLabel::minimumSizeHint();
}

QSize TextLabel::wrappedHint(int width) const {
    return {std::clamp(width, minimumWidth(), maximumWidth()), fontMetrics().height()};
}

int TextLabel::heightForWidth(int width) const {
    const auto known = heights_.find(width);
    return known != heights_.end() ? known->second
                                   : heights_.emplace(width, QLabel::heightForWidth(width)).first->second;
}

bool TextLabel::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) {
        followApplicationFont();
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        heights_.clear();
    }
    return QLabel::event(event);
}

void TextLabel::followApplicationFont() {
    switch (role_) {
        case TextRole::Title:
        case TextRole::DialogTitle:
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
