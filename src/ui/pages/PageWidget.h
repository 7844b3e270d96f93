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

/// A page of the wizard: its controls are built once, and refresh() copies the view's answers into them.
class PageWidget : public QWidget {
    Q_OBJECT

  public:
    /// Copies the view's answers into the controls. A control that agrees already is not touched.
    virtual void refresh() = 0;

    /// The smallest size that shows the page whole where it is `width` wide or wider, with every control that
    /// can be shown.
    QSize wholeSize(int width) const;

    /// Where the focus goes when the page is read and not used.
    TextLabel* heading() const { return heading_; }
    /// The first control that can be used, or none.
    virtual QWidget* firstControl() const { return nullptr; }
    /// How far its texts stand from either side.
    int textInset() const;

  protected:
    PageWidget();

    QVBoxLayout& column() { return *column_; }

    /// The first text of a page becomes its heading.
    TextLabel* addTitle(std::string_view text);
    TextLabel* addText(std::string_view text);

    /// Counts `control` in wholeSize() while it is hidden too.
    void mayBeHidden(QWidget* control);

  private:
    TextLabel* addLabel(TextRole role, std::string_view text);

    QVBoxLayout* column_;
    TextLabel* heading_ = nullptr;
    std::vector<QWidget*> hideable_;
};

/// Shows `text` in `label`, or hides the label where there is none: emptied, it would announce a change that
/// cannot be seen.
void showWhereAny(TextLabel* label, std::string_view text);

/// Shows `bar` in `widget`, or hides the widget where there is none.
void showWhereAny(ProgressBarWidget* widget, const std::optional<ProgressBar>& bar);

/// Shows or hides `control`, unless it is so already.
void setShown(QWidget* control, bool shown);

}  // namespace velmorindal
