#pragma once

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTest>
#include <memory>
#include <stdexcept>

#include "MainWindow.h"
#include "PageScroller.h"
#include "PageWidget.h"
#include "WizardTest.h"

namespace velmorindal {

/// Milliseconds: longer than anything takes even on a busy machine.
constexpr int patience = 600'000;

/// Runs the event loop until `condition` holds. @returns false when patience ended first.
template <typename Condition>
bool eventually(Condition condition) {
    return QTest::qWaitFor(condition, patience);
}

/// The real window over the real views, without a device.
class WindowTest : public WizardTest {
  protected:
    WindowTest() { QSettings{}.clear(); }

    void SetUp() override { openWindow(); }

    void openWindow() {
        window_ = std::make_unique<MainWindow>(container, [this] { ++closeRequests; });
        window_->show();
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get(), patience));
        settle();
    }

    MainWindow& window() { return *window_; }
    void closeWindow() { window_.reset(); }

    /// Lets announced changes reach the window.
    static void settle() {
        // A refresh asks for a new layout, which is made on the turn after it.
        for (int turn = 0; turn < 3; ++turn) {
            QApplication::processEvents();
        }
    }

    void show(wizardState page) {
        container.currentState = page;
        settle();
    }

    /// The control of a kind and accessible name that is on screen, or none.
    template <typename Control>
    Control* find(const QString& name) {
        for (Control* control : window_->findChildren<Control*>()) {
            if (control->isVisible() && nameOf(control) == name) {
                return control;
            }
        }
        return nullptr;
    }

    PageWidget& pageOnScreen() {
        for (const auto* scroller : window_->findChildren<PageScroller*>()) {
            if (scroller->isVisible()) {
                return scroller->page();
            }
        }
        throw std::logic_error{"no page is on screen"};
    }

    /// Where a control is in the window.
    QRect placeOf(const QWidget* control) {
        return {control->mapTo(window_.get(), QPoint{}), control->size()};
    }

    bool showsText(const QString& text) { return find<QLabel>(text) != nullptr; }

    void press(const QString& label) {
        auto* button = find<QPushButton>(label);
        ASSERT_NE(button, nullptr) << label.toStdString();
        button->click();
        settle();
    }

    /// The labels of the buttons below the page, left to right.
    QStringList navigation() {
        QStringList labels;
        for (const char* label : {"Cancel", "Back", "Next", "Save", "Close"}) {
            if (find<QPushButton>(QString::fromLatin1(label)) != nullptr) {
                labels << QString::fromLatin1(label);
            }
        }
        return labels;
    }

    int closeRequests = 0;

  private:
    static QString nameOf(const QWidget* control) {
        if (!control->accessibleName().isEmpty()) {
            return control->accessibleName();
        }
        return control->property("text").toString();
    }

    std::unique_ptr<MainWindow> window_;
};

}  // namespace velmorindal
