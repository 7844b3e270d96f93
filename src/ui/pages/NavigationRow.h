#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "ContainerView.h"

class QHBoxLayout;
class QPushButton;

namespace velmorindal {

/// The buttons below the page, with flexible space between those that are shown. Every button is created
/// once, then only shown and hidden. The row keeps its height when it is empty.
class NavigationRow final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the row.
    explicit NavigationRow(ContainerView& view);

    /// Shows and hides buttons as the view says. Calls `moveFocus` after showing the new buttons and before
    /// hiding the old ones, so that the focus does not pass through other controls.
    void refresh(const std::function<void()>& moveFocus);

    /// Next or Save if one of them is shown, otherwise null.
    QPushButton* defaultButton() const;
    /// The button of that option if it is shown, otherwise null.
    QPushButton* button(ButtonOptions option) const;
    /// Sets the distance in pixels of the first and the last button from the sides.
    void setInset(int inset);
    /// Whether `widget` is one of the buttons, shown or hidden.
    bool owns(const QWidget* widget) const;
    /// Whether `widget` is one of the buttons that are shown.
    bool offers(const QWidget* widget) const;

    /// Large enough for any set of buttons.
    QSize minimumSizeHint() const override;

  private:
    struct Entry {
        QPushButton* button;
        ButtonOptions option;
    };

    bool isShown(const Entry& entry) const { return shown_.contains(entry.option); }
    void arrange();

    ContainerView& view_;
    QHBoxLayout* row_;
    std::vector<Entry> entries_;
    ButtonOptions shown_ = ButtonOptions::None;
};

}  // namespace velmorindal
