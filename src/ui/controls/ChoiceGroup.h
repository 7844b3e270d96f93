#pragma once

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>
#include <QWidget>
#include <vector>

namespace velmorindal {

/// Radio buttons of which one is chosen, or none; a screen reader meets a group by the name of the question
/// that they answer.
class ChoiceGroup : public QWidget {
    Q_OBJECT

  public:
    /// The chosen entry, or the first while none is chosen: where the Tab key comes to.
    QRadioButton* entry() const;

  protected:
    explicit ChoiceGroup(const QString& question);

    QRadioButton* add(const QString& label);
    /// Chooses the entry of that number, or none for one that there is not.
    void chooseOnly(std::size_t number);

  private:
    void updateFocusPolicies();

    QButtonGroup exclusive_;
    std::vector<QRadioButton*> buttons_;
};

}  // namespace velmorindal
