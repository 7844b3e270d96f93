#include "StepColumn.h"

#include <QVBoxLayout>
#include <cstddef>

#include "ContainerView.h"
#include "Look.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

namespace {

void paintIn(QWidget* widget, const QColor& text, const QColor& background) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window, background);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

}  // namespace

StepColumn::StepColumn() {
    const int unit = look::spacing();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    paintIn(this, toQColor(colors::black), toQColor(colors::white));
    auto* column = new QVBoxLayout{this};
    column->setContentsMargins(unit, 2 * unit, unit, unit);
    column->setSpacing(unit / 2);
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        auto* step = new TextLabel{TextRole::Plain, stepLabels.at(i)};
        step->setContentsMargins(unit, unit / 2, unit, unit / 2);
        column->addWidget(step);
        steps_.at(i) = step;
    }
    column->addStretch();
    auto* version = new TextLabel{TextRole::Plain, ContainerView::versionText};
    version->setContentsMargins(unit, 0, unit, 0);
    column->addWidget(version);
}

void StepColumn::showCurrent(wizardState current) {
    TextLabel* const next = steps_.at(static_cast<std::size_t>(current));
    if (next == current_) {
        return;
    }
    if (current_ != nullptr) {
        paintIn(current_, toQColor(colors::black), toQColor(colors::white));
        current_->setAccessibleDescription({});
    }
    paintIn(next, toQColor(colors::white), toQColor(colors::blue));
    next->setAccessibleDescription(QStringLiteral("current step"));
    current_ = next;
}

}  // namespace velmorindal
