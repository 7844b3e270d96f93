#include <QLayout>
#include <QScrollBar>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "FocusScroller.h"
#include "Reason.h"
#include "WindowTest.h"

namespace velmorindal {
namespace {

/// The window in every state that its pages can be in.
class EveryStateTest : public WindowTest {
  protected:
    /// Calls `look` in each of them, with the state in words in the trace of a failure.
    void visit(const std::function<void()>& look) {
        for (const ConnectionStatus status :
             {ConnectionStatus::idle, ConnectionStatus::connecting, ConnectionStatus::connected,
              ConnectionStatus::disconnected, ConnectionStatus::writing, ConnectionStatus::error}) {
            velmorindal.connectionState = status;
            for (const bool saved : {false, true}) {
                velmorindal.justSaved = saved;
                SCOPED_TRACE(caseName(status));
                visitModes(look);
            }
        }
    }

    /// What the Calibration page says beside a Show button when readings stop.
    void visitTroubles(const std::function<void()>& look) {
        show(wizardState::Calibration);
        for (const char* button : {"Show Clarity", "Show Duration"}) {
            // There is no dongle.
            press(QString::fromLatin1(button));
            dispatch.waitForBackground();
            const auto trouble = QString::fromUtf8(CalibrationPanelView::couldNotStartText);
            ASSERT_TRUE(eventually([&] { return showsText(trouble); }));
            SCOPED_TRACE(button);
            look();
        }
    }

    void expectOwnShortcuts() {
        QStringList found;
        for (const auto* button : window().findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                EXPECT_FALSE(button->shortcut().isEmpty()) << button->text().toStdString();
                found << button->shortcut().toString();
            }
        }
        EXPECT_EQ(found.removeDuplicates(), 0) << found.join(u' ').toStdString();
    }

    void expectNothingScrolls() {
        for (const auto* scroller : window().findChildren<FocusScroller*>()) {
            if (scroller->isVisible()) {
                EXPECT_EQ(scroller->verticalScrollBar()->maximum(), 0);
                EXPECT_EQ(scroller->horizontalScrollBar()->maximum(), 0);
            }
        }
    }

  private:
    void visitModes(const std::function<void()>& look) {
        for (const OutputMode mode : {OutputMode::Direct, OutputMode::LongShort}) {
            velmorindal.outputMode = mode;
            for (const OutputPath path : {OutputPath::Switch, OutputPath::USBKeyboard}) {
                velmorindal.outputPath = path;
                for (const bool enabled : {false, true}) {
                    velmorindal.shortEnabled = enabled;
                    velmorindal.longEnabled = enabled;
                    visitPages(look);
                }
            }
        }
    }

    void visitPages(const std::function<void()>& look) {
        for (const wizardState page : allWizardStates) {
            for (const PollingState running :
                 {PollingState::none, PollingState::clarity, PollingState::duration}) {
                if (running != PollingState::none && page != wizardState::Calibration) {
                    continue;
                }
                velmorindal.pollingState = running;
                show(page);
                SCOPED_TRACE(std::string{stepLabel(page)}.append(" ").append(caseName(running)));
                look();
            }
            velmorindal.pollingState = PollingState::none;
        }
    }
};

TEST_F(EveryStateTest, NoTwoButtonsShareAnAccessKey) {
    visit([this] { expectOwnShortcuts(); });
    visitTroubles([this] { expectOwnShortcuts(); });
}

TEST_F(EveryStateTest, NoPageScrollsInTheWindowAtItsLeastSize) {
    container.summaryPanel.writeEndedWith(longReason);
    window().resize(window().minimumSize());
    settle();
    visit([this] { expectNothingScrolls(); });
    velmorindal.connectionState = ConnectionStatus::connected;
    visitTroubles([this] { expectNothingScrolls(); });
}

TEST_F(EveryStateTest, APageIsMeasuredWithAllThatItMayShow) {
    std::map<std::string, std::pair<int, int>> sizes;
    const auto measure = [&] {
        const PageWidget& page = pageOnScreen();
        const QSize whole = page.wholeSize(400);
        const std::pair size{whole.width(), whole.height()};
        const std::string name = page.metaObject()->className();
        EXPECT_EQ(sizes.try_emplace(name, size).first->second, size) << name;
    };
    visit(measure);
    container.connectPanel.keepReason(longReason);
    container.summaryPanel.writeEndedWith(longReason);
    visit(measure);
    visitTroubles(measure);
}

TEST_F(EveryStateTest, APageIsMeasuredHighEnoughForAllThatItMayShow) {
    std::map<std::pair<std::string, int>, QSize> measured;
    const auto compare = [&] {
        PageWidget& page = pageOnScreen();
        for (int width = 320; width <= 480; width += 16) {
            const std::pair named{std::string{page.metaObject()->className()}, width};
            const QSize whole = measured.try_emplace(named, page.wholeSize(width)).first->second;
            EXPECT_LE(page.layout()->totalMinimumSize().width(), whole.width()) << named.first;
            EXPECT_LE(page.layout()->totalHeightForWidth(whole.width()), whole.height())
                << named.first << ", " << width;
        }
    };
    for (const wizardState page : allWizardStates) {
        show(page);
        compare();
    }
    container.connectPanel.keepReason(longReason);
    container.summaryPanel.writeEndedWith(longReason);
    visit(compare);
    visitTroubles(compare);
}

}  // namespace
}  // namespace velmorindal
