#pragma once

#include <QScrollArea>
#include <QTimer>

namespace velmorindal {

/// Scrolls its content if there is too little room, and scrolls to the control in it that gets the focus.
/// Takes the focus itself only while there is something to scroll.
class FocusScroller : public QScrollArea {
    Q_OBJECT

  public:
    /// Owns `content`.
    FocusScroller(QWidget* content, const QString& accessibleName);
    FocusScroller(const FocusScroller&) = delete;
    FocusScroller& operator=(const FocusScroller&) = delete;
    ~FocusScroller() override;

  private:
    void adaptToRange();
    void showFocusOfWindow();
    void showFocus(QWidget* focused);

    /// Runs out when the layout has been made: only then do the controls have their places.
    QTimer layoutMade_;
};

}  // namespace velmorindal
