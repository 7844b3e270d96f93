#pragma once

#include <QFocusFrame>

namespace velmorindal {

/// A ring around the control with the focus, in one window. Many styles show the focus faintly, or only after
/// the Tab key.
class FocusRing final : public QFocusFrame {
    Q_OBJECT

  public:
    /// `window` owns the ring.
    explicit FocusRing(QWidget* window);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void follow(QWidget* focused);

    QWidget* const window_;
};

}  // namespace velmorindal
