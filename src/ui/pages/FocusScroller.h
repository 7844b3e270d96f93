#pragma once

#include <QScrollArea>

namespace velmorindal {

/// Scrolls where there is too little room, and shows whatever gets the focus in it. It takes the keyboard
/// focus only while there is something to scroll.
class FocusScroller : public QScrollArea {
    Q_OBJECT

  public:
    /// Owns `content`.
    FocusScroller(QWidget* content, const QString& accessibleName);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void adaptToRange();
    void showFocusLater();
    void showFocus(QWidget* focused);
};

}  // namespace velmorindal
