#include "AccessibleControls.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>

#include "ChoiceGroup.h"
#include "IndicatorWidget.h"
#include "KeyList.h"
#include "MessageDialog.h"
#include "ProgressBarWidget.h"
#include "StepSlider.h"
#include "TextLabel.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

class AccessibleControlsTest : public WindowTest {
  protected:
    static QAccessibleInterface& accessible(QObject* object) {
        return *QAccessible::queryAccessibleInterface(object);
    }
    static QString nameOf(QObject* object) { return accessible(object).text(QAccessible::Name); }

    /// The list of the Output page, which then is on the screen.
    KeyList& shownList() {
        velmorindal.outputPath = OutputPath::USBKeyboard;
        show(wizardState::Output);
        return *find<KeyList>(QStringLiteral("Keystroke"));
    }

    /// The entries of a key list that are marked as selected.
    static QStringList selectedIn(KeyList& list) {
        const QAccessibleInterface& entries = *accessible(&list).child(0);
        QStringList names;
        for (int i = 0; i < entries.childCount(); ++i) {
            if (entries.child(i)->state().selected) {
                names << entries.child(i)->text(QAccessible::Name);
            }
        }
        return names;
    }
};

TEST_F(AccessibleControlsTest, ASliderHasItsNameAndItsRealValueWhichCanBeSet) {
    velmorindal.cutoff = 0.3F;
    show(wizardState::Calibration);
    auto& slider = accessible(find<StepSlider>(QStringLiteral("Cutoff")));

    EXPECT_EQ(slider.role(), QAccessible::Slider);
    ASSERT_NE(slider.valueInterface(), nullptr);
    EXPECT_DOUBLE_EQ(slider.valueInterface()->currentValue().toDouble(), 0.3);
    EXPECT_DOUBLE_EQ(slider.valueInterface()->minimumValue().toDouble(), 0.1);
    EXPECT_DOUBLE_EQ(slider.valueInterface()->maximumValue().toDouble(), 3.0);
    EXPECT_DOUBLE_EQ(slider.valueInterface()->minimumStepSize().toDouble(), 0.05);
    EXPECT_TRUE(slider.state().focusable);
    EXPECT_EQ(slider.text(QAccessible::Description), QStringLiteral("seconds"));

    velmorindal.cutoff = 1.05F;
    settle();
    EXPECT_DOUBLE_EQ(slider.valueInterface()->currentValue().toDouble(), 1.05);

    slider.valueInterface()->setCurrentValue(0.7);
    EXPECT_FLOAT_EQ(velmorindal.cutoff.get(), 0.7F);
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
TEST_F(AccessibleControlsTest, ASlidersValueIsGivenInHundredths) {
    show(wizardState::Calibration);
    velmorindal.cutoff = 1.05F;
    settle();
    auto& slider = accessible(find<StepSlider>(QStringLiteral("Cutoff")));

    ASSERT_NE(slider.attributesInterface(), nullptr);
    const QVariant custom = slider.attributesInterface()->attributeValue(QAccessible::Attribute::Custom);
    const auto texts = custom.value<QHash<QString, QString>>();
    EXPECT_EQ(texts.value(QStringLiteral("valuetext")), QStringLiteral("1.05"));
}
#endif

TEST_F(AccessibleControlsTest, ABarIsAProgressBarWithAValueThatCannotBeSet) {
    show(wizardState::Calibration);
    // Given in hundredths.
    velmorindal.detectedDuration = static_cast<double>(1.2F);
    settle();
    auto& bar = accessible(find<ProgressBarWidget>(QStringLiteral("Duration of last hum")));

    EXPECT_EQ(bar.role(), QAccessible::ProgressBar);
    EXPECT_TRUE(bar.state().readOnly);
    ASSERT_NE(bar.valueInterface(), nullptr);
    EXPECT_DOUBLE_EQ(bar.valueInterface()->currentValue().toDouble(), 1.2);
    EXPECT_DOUBLE_EQ(bar.valueInterface()->maximumValue().toDouble(), 3.0);
}

TEST_F(AccessibleControlsTest, TheWindowIsAWindowByItsTitle) {
    EXPECT_EQ(accessible(&window()).role(), QAccessible::Window);
    EXPECT_EQ(nameOf(&window()), QStringLiteral("Velmorindal Setup"));
}

TEST_F(AccessibleControlsTest, ADialogsTitleIsThereForAScreenReaderOnceAsTheNameOfItsWindow) {
    container.cancelButtonPressed();
    settle();
    auto* dialog = window().findChild<MessageDialog*>();
    ASSERT_NE(dialog, nullptr);

    EXPECT_EQ(nameOf(dialog), QStringLiteral("Close Program?"));
    int spoken = 0;
    for (auto* label : dialog->findChildren<QLabel*>()) {
        spoken += accessible(label).state().invisible ? 0 : 1;
        EXPECT_EQ(accessible(label).state().invisible, label->text() == QStringLiteral("Close Program?"));
    }
    EXPECT_EQ(spoken, 1);
}

TEST_F(AccessibleControlsTest, AGroupOfChoicesIsAGroupingByItsQuestion) {
    show(wizardState::Mode);
    auto* group = find<ChoiceGroup>(QStringLiteral("Which mode would you like?"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(accessible(group).role(), QAccessible::Grouping);
    EXPECT_EQ(nameOf(group), QStringLiteral("Which mode would you like?"));
}

TEST_F(AccessibleControlsTest, AnIndicatorIsAPictureWithItsStateInTheDescription) {
    show(wizardState::Calibration);
    auto& indicator = accessible(find<IndicatorWidget>(QStringLiteral("Clarity indicator")));

    EXPECT_EQ(indicator.role(), QAccessible::Graphic);
    EXPECT_FALSE(indicator.text(QAccessible::Description).isEmpty());
}

TEST_F(AccessibleControlsTest, AKeyListIsNamedByItsLabelAndHasTheChosenKeyAsItsValue) {
    auto& list = accessible(&shownList());

    EXPECT_EQ(list.role(), QAccessible::ComboBox);
    EXPECT_EQ(list.text(QAccessible::Name), QStringLiteral("Keystroke"));
    EXPECT_EQ(list.text(QAccessible::Value), QStringLiteral("F1"));
    ASSERT_EQ(list.childCount(), 1);
    EXPECT_EQ(list.indexOfChild(list.child(0)), 0);
    EXPECT_FALSE(list.state().expanded);
    EXPECT_TRUE(list.state().collapsed);
    EXPECT_TRUE(list.state().expandable);
    EXPECT_TRUE(list.state().hasPopup);

    list.actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(list.state().expanded);
    EXPECT_FALSE(list.state().collapsed);
    list.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(list.state().expanded);
}

TEST_F(AccessibleControlsTest, TheChosenKeyOfAClosedListIsItsOneSelectedEntry) {
    KeyList& list = shownList();
    EXPECT_EQ(selectedIn(list), QStringList{QStringLiteral("F1")});

    velmorindal.outputKeys = keyList{.directKey = OutputKey::ShiftTab};
    settle();

    EXPECT_EQ(selectedIn(list), QStringList{QStringLiteral("Shift+Tab")});
}

TEST_F(AccessibleControlsTest, AScreenReaderThatComesLaterFindsTheChosenKeySelected) {
    KeyList list{QStringLiteral("Keystroke")};
    list.setKey(OutputKey::ShiftTab);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(&accessible(&list)));
    list.view()->clearSelection();

    EXPECT_EQ(selectedIn(list), QStringList{QStringLiteral("Shift+Tab")});
}

TEST_F(AccessibleControlsTest, AClosedListAnnouncesNoMoreThanTheToolkitsWhenItMarksItsChosenKey) {
    const auto marksOf = [](QComboBox& list) {
        int marks = 0;
        const auto counting = QObject::connect(list.view()->selectionModel(),
                                               &QItemSelectionModel::currentChanged, [&marks] { ++marks; });
        list.setCurrentIndex(3);
        QObject::disconnect(counting);
        return marks;
    };
    KeyList list{QStringLiteral("Keystroke")};
    accessible(&list);
    QComboBox plain;
    plain.addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")});

    EXPECT_EQ(marksOf(list), marksOf(plain));
    EXPECT_EQ(selectedIn(list), QStringList{list.currentText()});
}

TEST_F(AccessibleControlsTest, AKeyListIsLabelledByTheTextBesideIt) {
    const auto relations = accessible(&shownList()).relations(QAccessible::Label);

    ASSERT_EQ(relations.size(), 1);
    EXPECT_EQ(relations.front().first->text(QAccessible::Name), QStringLiteral("Keystroke"));
}

TEST_F(AccessibleControlsTest, TheHeadingOfAPageIsATextThatTakesTheFocus) {
    show(wizardState::Connect);
    auto* heading = qobject_cast<TextLabel*>(window().focusWidget());
    ASSERT_NE(heading, nullptr);
    const auto& spoken = accessible(heading);

    EXPECT_EQ(spoken.role(), QAccessible::StaticText);
    EXPECT_EQ(spoken.text(QAccessible::Name), heading->text());
    EXPECT_TRUE(spoken.state().focusable);
}

TEST_F(AccessibleControlsTest, AKeyListTakesTheFocusFromAScreenReader) {
    KeyList& list = shownList();
    ASSERT_NE(window().focusWidget(), &list);

    accessible(&list).actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());

    EXPECT_EQ(window().focusWidget(), &list);
}

TEST_F(AccessibleControlsTest, EveryOtherControlIsNamedByItsVisibleText) {
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.outputPath = OutputPath::USBKeyboard;
    for (const wizardState page : allWizardStates) {
        show(page);
        for (auto* button : window().findChildren<QAbstractButton*>()) {
            if (button->isVisible()) {
                EXPECT_EQ(nameOf(button), button->text());
                EXPECT_FALSE(button->text().isEmpty());
            }
        }
        for (auto* list : window().findChildren<QComboBox*>()) {
            if (list->isVisible()) {
                EXPECT_TRUE(showsText(nameOf(list))) << nameOf(list).toStdString();
            }
        }
    }
}

}  // namespace
}  // namespace velmorindal
