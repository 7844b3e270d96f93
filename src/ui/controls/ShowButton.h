#pragma once

#include <QPushButton>

namespace velmorindal {

/// A button that starts and stops a display. It looks pressed while its display runs, and its accessible
/// description says so. It sends no event for that: `Announcements` does it.
class ShowButton final : public QPushButton {
    Q_OBJECT

  public:
    using QPushButton::QPushButton;

    void setRunning(bool running);
    bool isRunning() const { return running_; }

  protected:
    void initStyleOption(QStyleOptionButton* option) const override;

  private:
    bool running_ = false;
};

}  // namespace velmorindal
