#include "NavigationRow.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "LegibleStyle.h"
#include "Look.h"
#include "PageWidget.h"
#include "ToQt.h"

namespace velmorindal {

namespace {

/// Alt with the first letter, but for Close with the last: Cancel has C, Load has O, and L could be mistaken
/// for Load.
QKeySequence shortcutFor(ButtonOptions option, const QString& label) {
    const QChar letter = option == ButtonOptions::Close ? label.back().toUpper() : label.at(0);
    return {Qt::ALT | static_cast<Qt::Key>(letter.unicode())};
}

bool isDefault(ButtonOptions option) {
    return option == ButtonOptions::Next || option == ButtonOptions::Save;
}

}  // namespace

NavigationRow::NavigationRow(ContainerView& view) : view_{view}, row_{new QHBoxLayout{this}} {
    const int unit = look::spacing();
    row_->setContentsMargins(2 * unit, unit, 2 * unit, 2 * unit);
    row_->setSpacing(unit);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    for (const NavigationButton& described : ContainerView::navigationButtons()) {
        auto* button = new QPushButton{toQString(described.label), this};
        LegibleStyle::markAsLeading(*button);
        button->setAutoDefault(true);
        button->setDefault(isDefault(described.option));
        button->setShortcut(shortcutFor(described.option, button->text()));
        button->hide();
        connect(button, &QPushButton::clicked, this,
                [&view, pressed = described.pressed] { (view.*pressed)(); });
        entries_.push_back({.button = button, .option = described.option});
    }
    refresh([] {});
}

void NavigationRow::refresh(const std::function<void()>& moveFocus) {
    const ButtonOptions wanted = view_.currentButtons();
    if (wanted != shown_) {
        shown_ = wanted;
        arrange();
    }
    moveFocus();
    for (const Entry& entry : entries_) {
        setShown(entry.button, isShown(entry));
    }
}

void NavigationRow::arrange() {
    while (QLayoutItem* const item = row_->takeAt(0)) {
        delete item;
    }
    const auto count = std::ranges::count_if(entries_, [this](const Entry& entry) { return isShown(entry); });
    // A single button stays at its end of the row: Cancel at the left, any other at the right.
    if (count == 1 && shown_ != ButtonOptions::Cancel) {
        row_->addStretch();
    }
    bool first = true;
    for (const Entry& entry : entries_) {
        if (!isShown(entry)) {
            continue;
        }
        if (!std::exchange(first, false)) {
            row_->addStretch();
        }
        row_->addWidget(entry.button);
        setShown(entry.button, true);
    }
    if (shown_ == ButtonOptions::Cancel) {
        row_->addStretch();
    }
    // At once: until then a new button would be at an old place, and a click would miss it.
    row_->activate();
}

QPushButton* NavigationRow::defaultButton() const {
    const auto found = std::ranges::find_if(
        entries_, [this](const Entry& entry) { return isShown(entry) && isDefault(entry.option); });
    return found == entries_.end() ? nullptr : found->button;
}

QPushButton* NavigationRow::button(ButtonOptions option) const {
    const auto found = std::ranges::find_if(
        entries_, [&](const Entry& entry) { return isShown(entry) && entry.option == option; });
    return found == entries_.end() ? nullptr : found->button;
}

void NavigationRow::setInset(int inset) {
    QMargins margins = row_->contentsMargins();
    if (margins.left() != inset) {
        margins.setLeft(inset);
        margins.setRight(inset);
        row_->setContentsMargins(margins);
    }
}

bool NavigationRow::owns(const QWidget* widget) const {
    return std::ranges::any_of(entries_, [widget](const Entry& entry) { return entry.button == widget; });
}

bool NavigationRow::offers(const QWidget* widget) const {
    return std::ranges::any_of(entries_,
                               [&](const Entry& entry) { return entry.button == widget && isShown(entry); });
}

QSize NavigationRow::minimumSizeHint() const {
    // The largest number that is shown at a time.
    constexpr int most = 3;
    QSize button;
    for (const Entry& entry : entries_) {
        button = button.expandedTo(entry.button->sizeHint());
    }
    const QMargins margins = row_->contentsMargins();
    return {most * button.width() + (most - 1) * row_->spacing() + margins.left() + margins.right(),
            button.height() + margins.top() + margins.bottom()};
}

}  // namespace velmorindal
