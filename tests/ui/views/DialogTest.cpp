#include "Dialog.h"

#include <gtest/gtest.h>

namespace velmorindal {
namespace {

TEST(Dialog, AQuestionHasADestructiveYesThatActsAndACancellingNoThatDoesNot) {
    int asked = 0;
    const Dialog dialog = Dialog::question(DialogId::save, "Title?", "Message.", [&] { ++asked; });

    EXPECT_EQ(dialog.id, DialogId::save);
    EXPECT_EQ(dialog.title, "Title?");
    EXPECT_EQ(dialog.message, "Message.");
    ASSERT_EQ(dialog.buttons.size(), 2U);
    EXPECT_EQ(dialog.buttons[0].label, "Yes");
    EXPECT_EQ(dialog.buttons[0].role, DialogRole::destructive);
    EXPECT_EQ(dialog.buttons[1].label, "No");
    EXPECT_EQ(dialog.buttons[1].role, DialogRole::cancel);
    dialog.buttons[1].action();
    EXPECT_EQ(asked, 0);
    dialog.buttons[0].action();
    EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace velmorindal
