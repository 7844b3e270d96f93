#pragma once

#include <QWidget>
#include <optional>
#include <string_view>
#include <vector>

#include "ProgressBar.h"

class QVBoxLayout;

namespace velmorindal {

class ProgressBarWidget;
class TextLabel;
enum class TextRole;

/// A page of the wizard. Its controls are created once, and refresh() updates them from the view. Main
/// thread only.
class PageWidget : public QWidget {
    Q_OBJECT

  public:
    /// Updates the controls from the view. A control that is up to date is not changed.
    virtual void refresh() = 0;

    /// The smallest size in pixels, `width` or wider, that shows the page whole with every control and text
    /// that it can show.
    QSize wholeSize(int width) const;

    /// The first text, which gets the focus on a page that is mainly read.
    TextLabel* heading() const { return heading_; }
    /// The first control that can be used, or none.
    virtual QWidget* firstControl() const { return nullptr; }
    /// The distance in pixels of its texts from the sides.
    int textInset() const;

  protected:
    PageWidget();

    /// The layout for the controls, top to bottom.
    QVBoxLayout& column() { return *column_; }

    /// The first text of a page becomes its heading.
    TextLabel* addTitle(std::string_view text);
    TextLabel* addText(std::string_view text);

    /// Makes wholeSize() count `control` also while it is hidden.
    void mayBeHidden(QWidget* control);

  private:
    TextLabel* addLabel(TextRole role, std::string_view text);

    QVBoxLayout* column_;
    TextLabel* heading_ = nullptr;
    std::vector<QWidget*> hideable_;
};

/// Shows `text` in `label`, or hides the label if `text` is empty. The hidden label keeps its old text, since
/// emptying it would announce a change.
void showWhereAny(TextLabel* label, std::string_view text);

/// Shows `bar` in `widget`, or hides the widget if there is none.
void showWhereAny(ProgressBarWidget* widget, const std::optional<ProgressBar>& bar);

/// Shows or hides `control`. Does nothing if it is in that state already.
void setShown(QWidget* control, bool shown);

}  // namespace velmorindal
