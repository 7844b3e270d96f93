#include "TextLabel.h"

#include <QEvent>
#include <algorithm>
#include <utility>

#include "Look.h"
#include "ToQt.h"

namespace velmorindal {

TextLabel::TextLabel(TextRole role, QWidget* parent) : QLabel{parent}, role_{role} {
    setTextFormat(Qt::PlainText);
    setWordWrap(role != TextRole::Label && role != TextRole::Plain);
    QSizePolicy policy{QSizePolicy::Preferred, QSizePolicy::Minimum};
    // Set now, since layouts keep room before the first text, with which the toolkit would set it.
    policy.setHeightForWidth(wordWrap());
    setSizePolicy(policy);
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
    return wordWrap() ? wrappedHint(look::narrowestLineWidth()) : whole(QLabel::sizeHint());
}

QSize TextLabel::minimumSizeHint() const {
    return wordWrap() ? wrappedHint(look::widestWordWidth()) : whole(QLabel::minimumSizeHint());
}

QSize TextLabel::wrappedHint(int width) const {
    return {std::clamp(width, minimumWidth(), maximumWidth()), fontMetrics().height()};
}

int TextLabel::heightForWidth(int width) const {
    const auto known = heights_.find(width);
    if (known != heights_.end()) {
        return known->second;
    }
    int height = text().isEmpty() ? fontMetrics().height() : QLabel::heightForWidth(width);
    if (countsEveryText_) {
        for (const QString& other : otherTexts_) {
            const QRect bounds{0, 0, width, QWIDGETSIZE_MAX};
            height = std::max(height, fontMetrics().boundingRect(bounds, Qt::TextWordWrap, other).height());
        }
    }
    return heights_.emplace(width, height).first->second;
}

QSize TextLabel::whole(const QSize& size) const {
    const QMargins margins = contentsMargins();
    int width = fontMetrics().horizontalAdvance(roomFor_);
    if (countsEveryText_) {
        for (const QString& other : otherTexts_) {
            width = std::max(width, fontMetrics().horizontalAdvance(other));
        }
    }
    return size.expandedTo({width + margins.left() + margins.right(), fontMetrics().height()});
}

void TextLabel::keepRoomFor(const QString& text) {
    roomFor_ = text;
    updateGeometry();
}

void TextLabel::mayShow(std::vector<QString> texts) {
    otherTexts_ = std::move(texts);
}

void TextLabel::countEveryText(bool count) {
    if (otherTexts_.empty() || countsEveryText_ == count) {
        return;
    }
    countsEveryText_ = count;
    heights_.clear();
    updateGeometry();
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
