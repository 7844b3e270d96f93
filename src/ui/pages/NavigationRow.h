#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "ContainerView.h"

class QHBoxLayout;
class QPushButton;

namespace velmorindal {

/// The buttons below the page, with flexible space between those that are there. Every button is made once
/// and only shown and hidden. The row keeps its height when it is empty.
class NavigationRow final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the row.
    explicit NavigationRow(ContainerView& view);

    /// Shows and hides buttons as the view says. `moveFocus` is called while the new buttons are there
    /// already and the old ones still are, so that the focus does not pass through other controls on its way.
    void refresh(const std::function<void()>& moveFocus);

    /// Next or Save where there is one.
    QPushButton* defaultButton() const;
    /// The button of that option where it is there.
    QPushButton* button(ButtonOptions option) const;
    /// How far the first and the last button stand from either side.
    void setInset(int inset);
    /// Whether `widget` is one of the buttons, there or not.
    bool owns(const QWidget* widget) const;
    /// Whether `widget` is one of the buttons that are there.
    bool offers(const QWidget* widget) const;

    /// Wide and high enough for any set of buttons.
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
