#pragma once

#include <QScrollArea>
#include <QTimer>

namespace velmorindal {

/// Scrolls where there is too little room, and shows whatever gets the focus in it. It takes the keyboard
/// focus only while there is something to scroll.
class FocusScroller : public QScrollArea {
    Q_OBJECT

  public:
    /// Owns `content`.
    FocusScroller(QWidget* content, const QString& accessibleName);
    FocusScroller(const FocusScroller&) = delete;
    FocusScroller& operator=(const FocusScroller&) = delete;
    ~FocusScroller() override;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void adaptToRange();
    void showFocusOfWindow();
    void showFocus(QWidget* focused);

    /// What is inside gets its place only when the layout has been made.
    QTimer layoutMade_;
};

}  // namespace velmorindal
