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

    static void raise(Published<bool>& flag) {
        flag = true;
        settle();
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
    ASSERT_NE(button(dialog(), "Yes"), nullptr);
    ASSERT_NE(button(dialog(), "No"), nullptr);
    EXPECT_LT(button(dialog(), "Yes")->x(), button(dialog(), "No")->x());
    EXPECT_EQ(button(dialog(), "Yes")->shortcut(), QKeySequence{Qt::ALT | Qt::Key_Y});
    EXPECT_EQ(button(dialog(), "No")->shortcut(), QKeySequence{Qt::ALT | Qt::Key_N});
}

TEST_F(DialogPresenterTest, YesIsNeverTheDefaultNorFocusedAndNothingIsLeftAfterNo) {
    for (auto* flag :
         {&container.showingClosingAlert, &container.showingSaveAlert, &container.showingXMLSaveAlert}) {
        raise(*flag);
        ASSERT_NE(dialog(), nullptr);
        EXPECT_FALSE(button(dialog(), "Yes")->isDefault());
        EXPECT_TRUE(button(dialog(), "No")->isDefault());
        EXPECT_EQ(dialog()->focusWidget(), button(dialog(), "No"));
        button(dialog(), "No")->click();
        EXPECT_TRUE(eventually([this] { return window().findChildren<MessageDialog*>().isEmpty(); }));
        EXPECT_FALSE(flag->get());
    }
}

TEST_F(DialogPresenterTest, EscapeAndTheFrameDecline) {
    for (const bool escape : {true, false}) {
        raise(container.showingClosingAlert);
        if (escape) {
            QTest::keyClick(dialog(), Qt::Key_Escape);
        } else {
            dialog()->close();
        }
        settle();
        EXPECT_EQ(terminations, 0);
        EXPECT_FALSE(container.showingClosingAlert.get());
        EXPECT_EQ(dialog(), nullptr);
    }
}

TEST_F(DialogPresenterTest, ADialogIsDismissedBeforeItsButtonActs) {
    raise(container.showingXMLSaveAlert);
    bool asked = true;
    const auto subscription = container.objectWillChange.subscribe([&] { asked = filePanel.isOpen(); });

    button(dialog(), "Yes")->click();

    EXPECT_FALSE(asked);
    EXPECT_TRUE(filePanel.isOpen());
}

TEST_F(DialogPresenterTest, ADialogFollowsItsTextsWhileItIsOpen) {
    raise(container.showingGenericAlert);
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

TEST_F(DialogPresenterTest, TheLoadErrorIsShownWithItsTexts) {
    container.connectPanel.alertTitle = "Could Not Load XML File";
    container.connectPanel.alertMessage = "<b>No</b> settings.";
    raise(container.connectPanel.showingAlert);

    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(hasText(dialog(), "<b>No</b> settings."));
    EXPECT_EQ(dialog()->findChildren<QLabel*>().at(1)->textFormat(), Qt::PlainText);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(container.connectPanel.showingAlert.get());
}

TEST_F(DialogPresenterTest, AFlagThatIsClearedElsewhereTakesTheDialogAway) {
    raise(container.showingClosingAlert);
    container.showingClosingAlert = false;
    settle();

    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(terminations, 0);
}

TEST_F(DialogPresenterTest, AnUnrelatedChangeLeavesAnOpenDialogAlone) {
    raise(container.showingClosingAlert);
    const auto* before = dialog();

    velmorindal.readWriteProgress = 1.0;
    settle();

    EXPECT_EQ(dialog(), before);
}

}  // namespace
}  // namespace velmorindal
