#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

#include "ApplicationFont.h"
#include "FocusScroller.h"
#include "MessageDialog.h"
#include "NavigationRow.h"
#include "PageScroller.h"
#include "StepColumn.h"
#include "TextLabel.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// The window on a screen that is far too small for its font.
class LargeFontTest : public WindowTest {
  protected:
    LargeFontTest() { font.setPointSize(40); }

    /// The part of a control that can be seen, when the focus is on it.
    static QRect seen(const QWidget& control) { return control.visibleRegion().boundingRect(); }

    /// What scrolls the whole window.
    FocusScroller& outer() { return *window().findChildren<FocusScroller*>().front(); }

    MessageDialog& dialog() { return *window().findChildren<MessageDialog*>().back(); }

    const ApplicationFont font;
};

TEST_F(LargeFontTest, NoNameOfAStepAndNoButtonIsSqueezed) {
    for (const wizardState page : allWizardStates) {
        show(page);
        for (const TextLabel* step : window().findChild<StepColumn*>()->findChildren<TextLabel*>()) {
            EXPECT_GE(step->height(), step->sizeHint().height()) << step->text().toStdString();
            EXPECT_GE(step->width(), step->sizeHint().width()) << step->text().toStdString();
        }
        for (const QPushButton* button : window().findChild<NavigationRow*>()->findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
                EXPECT_GE(button->height(), button->sizeHint().height()) << button->text().toStdString();
            }
        }
    }
}

TEST_F(LargeFontTest, TheWindowIsNoLargerThanTheScreenAndItsContentScrolls) {
    const QSize room = window().screen()->availableSize();
    EXPECT_LE(window().width(), room.width());
    EXPECT_LE(window().height(), room.height());
    EXPECT_GT(outer().horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(outer().verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(outer().focusPolicy(), Qt::StrongFocus);
}

TEST_F(LargeFontTest, OneScrollBarIsEnoughFromSideToSide) {
    for (const wizardState page : allWizardStates) {
        show(page);
        const auto* scroller = find<PageScroller>(QString::fromUtf8(stepLabel(page).data()));
        ASSERT_NE(scroller, nullptr);
        EXPECT_EQ(scroller->horizontalScrollBar()->maximum(), 0) << stepLabel(page);
    }
}

TEST_F(LargeFontTest, TheWindowOpensWithTheFocusOnItsButtonInSightWhereItStaysWhenTheFontGrows) {
    const auto* next = find<QPushButton>(QStringLiteral("Next"));
    EXPECT_EQ(window().focusWidget(), next);
    EXPECT_EQ(seen(*next), next->rect());

    font.setPointSize(60);
    settle();

    EXPECT_EQ(window().focusWidget(), next);
    EXPECT_EQ(seen(*next), next->rect());
    EXPECT_GT(outer().verticalScrollBar()->value(), 0);
}

TEST_F(LargeFontTest, WhateverTheTabKeyReachesOnAnyPageIsInSight) {
    velmorindal.connectionState = ConnectionStatus::connected;
    for (const wizardState page : allWizardStates) {
        show(page);
        for (QPushButton* button : window().findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                button->setFocus(Qt::TabFocusReason);
                settle();
                EXPECT_EQ(seen(*button), button->rect())
                    << stepLabel(page) << ", " << button->text().toStdString();
            }
        }
    }
}

TEST_F(LargeFontTest, ADialogStaysOnTheScreenAndItsTextsScroll) {
    font.setPointSize(46);
    container.showingXMLSaveAlert = true;
    settle();

    const QSize room = dialog().screen()->availableSize();
    EXPECT_LE(dialog().width(), room.width());
    EXPECT_LE(dialog().height(), room.height());
    for (const QPushButton* button : dialog().findChildren<QPushButton*>()) {
        EXPECT_EQ(seen(*button), button->rect());
    }
    const auto* texts = dialog().findChild<FocusScroller*>();
    ASSERT_NE(texts, nullptr);
    EXPECT_GT(texts->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(texts->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(texts->focusPolicy(), Qt::StrongFocus);
}

TEST_F(LargeFontTest, TheTextsOfADialogAreAsWideAsItsButtonsWhereTheseAreWider) {
    font.setPointSize(4);
    container.showingXMLSaveAlert = true;
    settle();

    for (const TextLabel* label : dialog().findChildren<TextLabel*>()) {
        EXPECT_EQ(label->width(), dialog().layout()->contentsRect().width()) << label->text().toStdString();
    }
}

}  // namespace
}  // namespace velmorindal
