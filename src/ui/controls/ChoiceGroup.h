#pragma once

#include <QButtonGroup>
#include <QRadioButton>
#include <QVBoxLayout>
#include <QWidget>
#include <vector>

namespace velmorindal {

/// Radio buttons of which one is chosen, or none. For a screen reader the group has the name of the question
/// that they answer.
class ChoiceGroup : public QWidget {
    Q_OBJECT

  public:
    /// The entry where the Tab key stops: the chosen one, or the first while none is chosen. There must
    /// be one.
    QRadioButton* entry() const;

  protected:
    explicit ChoiceGroup(const QString& question);

    QRadioButton* add(const QString& label);
    /// Chooses the entry with that number, from 0, or none for a number without an entry.
    void chooseOnly(std::size_t number);

  private:
    void updateFocusPolicies();

    QButtonGroup exclusive_;
    std::vector<QRadioButton*> buttons_;
};

}  // namespace velmorindal
