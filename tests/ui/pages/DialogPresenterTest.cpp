#include "DialogPresenter.h"

#include "MessageDialog.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class DialogPresenterTest : public WindowTest {
  protected:
    QList<MessageDialog*> visibleDialogs() {
        QList<MessageDialog*> visible;
        for (auto* dialog : window().findChildren<MessageDialog*>()) {
            if (dialog->isVisible()) {
                visible << dialog;
            }
        }
        return visible;
    }

    MessageDialog* dialog() { return visibleDialogs().value(0); }

    static bool hasText(MessageDialog* dialog, const std::string& text) {
        const auto labels = dialog->findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [&](const QLabel* label) { return label->text().toStdString() == text; });
    }

    static QPushButton* button(MessageDialog* dialog, const char* label) {
        for (auto* button : dialog->findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String{label}) {
                return button;
            }
        }
        return nullptr;
    }
};

TEST_F(DialogPresenterTest, CancelOpensTheQuestionWhetherToClose) {
    show(wizardState::Mode);
    press(QStringLiteral("Cancel"));

    ASSERT_EQ(visibleDialogs().size(), 1);
    EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Close Program?"));
    EXPECT_EQ(dialog()->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(hasText(dialog(), "Close Program?"));
    EXPECT_TRUE(
        hasText(dialog(),
                "No changes have been written to the device;\nany updates will be lost.\n\nAre you sure you "
                "want to quit?"));
    ASSERT_NE(button(dialog(), "Yes"), nullptr);
    ASSERT_NE(button(dialog(), "No"), nullptr);
    EXPECT_LT(button(dialog(), "Yes")->x(), button(dialog(), "No")->x());
}

TEST_F(DialogPresenterTest, YesIsNeverTheDefaultNorFocused) {
    for (auto* flag :
         {&container.showingClosingAlert, &container.showingSaveAlert, &container.showingXMLSaveAlert}) {
        *flag = true;
        settle();
        ASSERT_NE(dialog(), nullptr);
        EXPECT_FALSE(button(dialog(), "Yes")->isDefault());
        EXPECT_TRUE(button(dialog(), "No")->isDefault());
        EXPECT_EQ(dialog()->focusWidget(), button(dialog(), "No"));
        button(dialog(), "No")->click();
        settle();
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_FALSE(flag->get());
    }
}

TEST_F(DialogPresenterTest, ADialogIsDismissedBeforeItsButtonActs) {
    container.showingXMLSaveAlert = true;
    settle();
    bool asked = true;
    const auto subscription = container.objectWillChange.subscribe([&] { asked = filePanel.isOpen(); });

    button(dialog(), "Yes")->click();

    EXPECT_FALSE(asked);
    EXPECT_TRUE(filePanel.isOpen());
}

TEST_F(DialogPresenterTest, ADialogFollowsItsTextsWhileItIsOpen) {
    container.showingGenericAlert = true;
    settle();
    container.alertTitle = "Warning";
    container.alertMessage = "Be careful.";
    settle();

    EXPECT_TRUE(hasText(dialog(), "Warning"));
    EXPECT_TRUE(hasText(dialog(), "Be careful."));
}

TEST_F(DialogPresenterTest, ADialogAnswersOnceAndNotWhenItIsWithdrawn) {
    for (const bool withdrawn : {false, true}) {
        int answers = 0;
        MessageDialog question{Dialog::question(DialogId::save, "Title", "Message", [] {}),
                               [&answers](const DialogButton& /*button*/) { ++answers; }, &window()};
        question.open();
        if (withdrawn) {
            question.withdraw();
        } else {
            question.reject();
        }
        // Hiding it may bring one more press of Escape.
        question.reject();
        EXPECT_EQ(answers, withdrawn ? 0 : 1);
    }
}

TEST_F(DialogPresenterTest, EscapeDeclinesOnce) {
    container.showingClosingAlert = true;
    settle();

    QTest::keyClick(dialog(), Qt::Key_Escape);
    settle();

    EXPECT_EQ(terminations, 0);
    EXPECT_FALSE(container.showingClosingAlert.get());
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(DialogPresenterTest, ClosingADialogByItsFrameDeclines) {
    container.showingSaveAlert = true;
    settle();

    dialog()->close();
    settle();

    EXPECT_FALSE(container.showingSaveAlert.get());
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(DialogPresenterTest, TheLoadErrorIsShownWithItsTexts) {
    container.connectPanel.alertTitle = "Could Not Load XML File";
    container.connectPanel.alertMessage = "<b>No</b> settings.";
    container.connectPanel.showingAlert = true;
    settle();

    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(hasText(dialog(), "<b>No</b> settings."));
    EXPECT_EQ(dialog()->findChildren<QLabel*>().at(1)->textFormat(), Qt::PlainText);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(container.connectPanel.showingAlert.get());
}

TEST_F(DialogPresenterTest, AFlagThatIsClearedElsewhereTakesTheDialogAway) {
    container.showingClosingAlert = true;
    settle();
    container.showingClosingAlert = false;
    settle();

    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(terminations, 0);
}

TEST_F(DialogPresenterTest, AnUnrelatedChangeLeavesAnOpenDialogAlone) {
    container.showingClosingAlert = true;
    settle();
    const auto* before = dialog();

    velmorindal.readWriteProgress = 1.0;
    settle();

    EXPECT_EQ(dialog(), before);
}

TEST_F(DialogPresenterTest, NothingIsLeftOfADialogThatIsAnswered) {
    container.showingSaveAlert = true;
    settle();
    button(dialog(), "No")->click();

    EXPECT_TRUE(eventually([this] { return window().findChildren<MessageDialog*>().isEmpty(); }));
}

}  // namespace
}  // namespace velmorindal
