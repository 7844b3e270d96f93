#include "RadioGroup.h"

#include <gmock/gmock.h>

#include "ChangeNotifier.h"

namespace velmorindal {
namespace {

class RadioGroupTest : public testing::Test {
  protected:
    std::vector<bool> chosen() const {
        std::vector<bool> states;
        for (const QRadioButton* button : group.findChildren<QRadioButton*>()) {
            states.push_back(button->isChecked());
        }
        return states;
    }

    static constexpr std::array<Choice<int>, 2> choices{{
        {.label = "One", .value = 1},
        {.label = "Two", .value = 2},
    }};
    ChangeNotifier notifier;
    Published<int> number{notifier, 2};
    RadioGroup<int> group{"Which number?", choices, number};
};

TEST_F(RadioGroupTest, TheValueOfThePropertyIsChosen) {
    EXPECT_THAT(chosen(), testing::ElementsAre(false, true));
    number = 1;
    group.refresh();
    EXPECT_THAT(chosen(), testing::ElementsAre(true, false));
}

TEST_F(RadioGroupTest, AValueThatIsNoChoiceStaysAndLeavesNoneChosenUntilOneIs) {
    number = 7;
    group.refresh();
    EXPECT_THAT(chosen(), testing::ElementsAre(false, false));
    EXPECT_EQ(number.get(), 7);
    // The Tab key still comes to the group.
    EXPECT_EQ(group.entry()->text(), QStringLiteral("One"));
    EXPECT_EQ(group.entry()->focusPolicy(), Qt::StrongFocus);

    group.entry()->click();

    EXPECT_EQ(number.get(), 1);
    EXPECT_THAT(chosen(), testing::ElementsAre(true, false));
    group.findChildren<QRadioButton*>().back()->click();
    EXPECT_THAT(chosen(), testing::ElementsAre(false, true));
}

TEST_F(RadioGroupTest, TheTabKeyComesToTheChosenEntryAndAClickToEvery) {
    const auto policies = [this] {
        std::vector<Qt::FocusPolicy> all;
        for (const QRadioButton* button : group.findChildren<QRadioButton*>()) {
            all.push_back(button->focusPolicy());
        }
        return all;
    };
    EXPECT_THAT(policies(), testing::ElementsAre(Qt::ClickFocus, Qt::StrongFocus));

    number = 1;
    group.refresh();

    EXPECT_THAT(policies(), testing::ElementsAre(Qt::StrongFocus, Qt::ClickFocus));
}

}  // namespace
}  // namespace velmorindal
