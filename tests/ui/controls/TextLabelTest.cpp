#include "TextLabel.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QRegularExpression>

#include "ApplicationFont.h"
#include "Look.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

using TextLabelTest = WindowTest;

TEST_F(TextLabelTest, NoWordOfAnyPageIsWiderThanTheRoomKeptForOne) {
    int words = 0;
    for (const auto* label : window().findChildren<TextLabel*>()) {
        const QFontMetrics metrics{label->font()};
        for (const QString& word : label->text().split(QRegularExpression{QStringLiteral("\\s+")})) {
            EXPECT_LE(metrics.horizontalAdvance(word), look::widestWordWidth()) << word.toStdString();
            ++words;
        }
    }
    EXPECT_GT(words, 200);
}

TEST_F(TextLabelTest, ALongerTextAndALargerFontAskForMoreHeight) {
    TextLabel label{TextRole::Body, "One line."};
    const int oneLine = label.heightForWidth(200);

    label.showText("One line, and so many words after it that it takes two or three.");
    const int lines = label.heightForWidth(200);
    QFont larger = label.font();
    larger.setPointSizeF(larger.pointSizeF() * 2);
    label.setFont(larger);

    EXPECT_GT(lines, oneLine);
    EXPECT_GT(label.heightForWidth(200), lines);
}

TEST_F(TextLabelTest, EveryTitleIsLargerThanTheBodyText) {
    const TextLabel body{TextRole::Body};
    int titles = 0;
    for (const auto* label : window().findChildren<TextLabel*>()) {
        if (label->role() == TextRole::Title) {
            EXPECT_GT(label->fontInfo().pointSizeF(), body.fontInfo().pointSizeF())
                << label->text().toStdString();
            ++titles;
        }
    }
    EXPECT_EQ(titles, 3);
    EXPECT_GT(TextLabel{TextRole::DialogTitle}.fontInfo().pointSizeF(), body.fontInfo().pointSizeF());
}

TEST_F(TextLabelTest, AWrappedTextThatHasAFixedWidthAsksForNoOther) {
    TextLabel label{TextRole::Body, "Some words"};
    label.setFixedWidth(77);

    EXPECT_EQ(label.sizeHint().width(), 77);
    EXPECT_EQ(label.minimumSizeHint().width(), 77);
}

TEST_F(TextLabelTest, CountsTheTextsThatMayStandThereInItsHeightWhileItIsToldTo) {
    TextLabel label{TextRole::Body, "One line."};
    label.mayShow({QStringLiteral("One line, and so many words after it that it takes two or three.")});
    const int alone = label.heightForWidth(200);

    label.countEveryText(true);
    EXPECT_GT(label.heightForWidth(200), alone);

    label.countEveryText(false);
    EXPECT_EQ(label.heightForWidth(200), alone);
}

TEST_F(TextLabelTest, ATitleFollowsTheFontOfTheApplication) {
    TextLabel title{TextRole::Title};
    const ApplicationFont font;

    font.scale(2);
    // The toolkit sends it while its event loop runs.
    QEvent changed{QEvent::ApplicationFontChange};
    QApplication::sendEvent(&title, &changed);

    EXPECT_EQ(title.font().pointSizeF(), look::titleFont().pointSizeF());
}

}  // namespace
}  // namespace velmorindal
