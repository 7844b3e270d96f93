#pragma once

#include <QPushButton>

namespace velmorindal {

/// Starts a display and stops it. It looks pressed while its display runs, which its accessible description
/// says too. It sends no event for that: the page announces it.
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
