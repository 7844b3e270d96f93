#include "MonkeyHands.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <array>
#include <utility>

namespace velmorindal {
namespace {

constexpr std::array fileNames{"saved.xml", "other.xml", "missing.xml", "torn.xml"};

/// Most steps go on to the next page; few end the program, which leads nowhere.
std::size_t weightOf(const QAbstractButton& button) {
    const QString text = button.text();
    if (text == QLatin1String{"Next"} || text == QLatin1String{"Save"} || text == QLatin1String{"OK"}) {
        return 12;
    }
    if (text == QLatin1String{"Close"} || text == QLatin1String{"Cancel"}) {
        return 1;
    }
    return 4;
}

}  // namespace

MonkeyHands::MonkeyHands(std::mt19937_64& random, std::filesystem::path files)
    : random_{random}, files_{std::move(files)} {}

std::size_t MonkeyHands::below(std::size_t count) {
    return random_() % count;
}

template <typename Control>
std::vector<Control*> MonkeyHands::reachable(const QWidget& top) const {
    std::vector<Control*> found;
    for (Control* control : top.findChildren<Control*>()) {
        if (control->isVisible() && control->isEnabled()) {
            found.push_back(control);
        }
    }
    return found;
}

std::string MonkeyHands::act(QWidget& window) {
    QWidget* const modal = QApplication::activeModalWidget();
    QWidget& top = modal != nullptr ? *modal : window;
    if (qobject_cast<QFileDialog*>(&top) != nullptr) {
        return answerFilePanel(top);
    }
    return oneIn(8) ? typeSomething(top) : pressSomething(top);
}

std::string MonkeyHands::pressSomething(QWidget& top) {
    const auto sliders = reachable<QSlider>(top);
    if (!sliders.empty() && oneIn(6)) {
        QSlider* const slider = sliders[below(sliders.size())];
        constexpr std::array keys{Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Home,
                                  Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End};
        QTest::keyClick(slider, keys.at(below(keys.size())));
        return "moved " + slider->accessibleName().toStdString();
    }
    const auto lists = reachable<QComboBox>(top);
    if (!lists.empty() && oneIn(4)) {
        QComboBox* const list = lists[below(lists.size())];
        constexpr std::array keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_T, Qt::Key_F};
        QTest::keyClick(list, keys.at(below(keys.size())));
        return "chose from " + list->accessibleName().toStdString();
    }
    std::vector<QAbstractButton*> buttons;
    for (QAbstractButton* button : reachable<QAbstractButton>(top)) {
        buttons.insert(buttons.end(), weightOf(*button), button);
    }
    if (buttons.empty()) {
        return "found nothing to press";
    }
    QAbstractButton* const button = buttons[below(buttons.size())];
    // The press may be the end of the button.
    std::string done = "pressed " + button->text().toStdString();
    ++presses_;
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint{button->height() / 2, button->height() / 2});
    return done;
}

std::string MonkeyHands::answerFilePanel(QWidget& top) {
    auto* const name = top.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name == nullptr || oneIn(4)) {
        QTest::keyClick(&top, Qt::Key_Escape);
        return "dismissed the file panel";
    }
    const std::filesystem::path chosen = files_ / fileNames.at(below(fileNames.size()));
    name->setText(QString::fromStdString(chosen.string()));
    // The toolkit may ask in a nested event loop whether to replace a file, or say that there is none.
    const Qt::Key answer = oneIn(2) ? Qt::Key_Escape : Qt::Key_Return;
    QTimer::singleShot(0, [answer] {
        if (auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            QTest::keyClick(question, answer);
        }
    });
    QTest::keyClick(name, Qt::Key_Return);
    return "chose the file " + chosen.filename().string();
}

std::string MonkeyHands::typeSomething(QWidget& top) {
    QWidget* const focus = QApplication::focusWidget();
    QWidget* const target = focus != nullptr && top.isAncestorOf(focus) ? focus : &top;
    constexpr std::array keys{Qt::Key_Tab,  Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape,
                              Qt::Key_Down, Qt::Key_Up,      Qt::Key_A,     Qt::Key_0};
    const Qt::Key key = keys.at(below(keys.size()));
    QTest::keyClick(target, key);
    return "typed " + std::to_string(key);
}

}  // namespace velmorindal
