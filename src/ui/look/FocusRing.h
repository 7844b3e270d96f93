#pragma once

#include <QFocusFrame>

namespace velmorindal {

/// A ring around the control that has the focus, in one window, whatever the style draws there itself: many
/// styles show the focus faintly, or only after the Tab key.
class FocusRing final : public QFocusFrame {
    Q_OBJECT

  public:
    explicit FocusRing(QWidget* window);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void follow(QWidget* focused);

    QWidget* const window_;
};

}  // namespace velmorindal
