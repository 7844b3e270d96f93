#include "AccessibleControls.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QStackedWidget>
#include <cmath>

#include "Announcer.h"
#include "ChoiceGroup.h"
#include "IndicatorWidget.h"
#include "KeyList.h"
#include "LogoWidget.h"
#include "ProgressBarWidget.h"
#include "ShowButton.h"
#include "StepSlider.h"
#include "TextLabel.h"

namespace velmorindal {

namespace {

class AccessibleBar final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit AccessibleBar(ProgressBarWidget& bar)
        : QAccessibleWidget{&bar, QAccessible::ProgressBar}, widget_{bar} {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }
    QVariant currentValue() const override { return widget_.spokenValue(); }
    void setCurrentValue(const QVariant& /*value*/) override {}
    QVariant maximumValue() const override { return widget_.bar().maxValue; }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return 0.0; }

  private:
    const ProgressBarWidget& widget_;
};

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

/// A value as a screen reader should speak it. From a number alone, the screen readers used with these
/// versions of the toolkit say 1 for 1.05.
class ValueText : public QAccessibleAttributesInterface {
  public:
    QList<QAccessible::Attribute> attributeKeys() const final { return {QAccessible::Attribute::Custom}; }
    QVariant attributeValue(QAccessible::Attribute /*key*/) const final {
        return QVariant::fromValue(QHash<QString, QString>{{QStringLiteral("valuetext"), valueText()}});
    }

  protected:
    void* attributes(QAccessible::InterfaceType type) {
        return type == QAccessible::AttributesInterface ? static_cast<QAccessibleAttributesInterface*>(this)
                                                        : nullptr;
    }
    virtual QString valueText() const = 0;
};

#else

/// These versions of the toolkit have no text for a value, and the screen readers used with them do not
/// need it.
class ValueText {
  protected:
    ~ValueText() = default;
    static void* attributes(QAccessible::InterfaceType /*type*/) { return nullptr; }
    virtual QString valueText() const = 0;
};

#endif

class AccessibleSlider final : public QAccessibleWidget, public QAccessibleValueInterface, public ValueText {
  public:
    explicit AccessibleSlider(StepSlider& slider)
        : QAccessibleWidget{&slider, QAccessible::Slider}, slider_{slider} {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (void* const found = attributes(type)) {
            return found;
        }
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return valueAt(slider_.value()); }
    void setCurrentValue(const QVariant& value) override {
        slider_.setValue(slider_.range().nearestPosition(value.toFloat()));
    }
    QVariant maximumValue() const override { return slider_.range().maximum; }
    QVariant minimumValue() const override { return slider_.range().minimum; }
    QVariant minimumStepSize() const override { return slider_.range().step; }
    QString valueText() const override { return QString::number(valueAt(slider_.value()), 'f', 2); }

  private:
    /// Rounded to four decimals, so that 0.3 is spoken and not 0.30000001192.
    double valueAt(int position) const {
        constexpr double parts = 10000.0;
        return std::round(static_cast<double>(slider_.range().valueAt(position)) * parts) / parts;
    }

    StepSlider& slider_;
};

/// A pop-up list with its accessible name. The toolkit's interface uses the chosen entry as the name.
///
/// The accessibility bus has no value for a list. Screen readers get the choice as a read-only text and as
/// the one entry that is selected.
class AccessibleKeyList final : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit AccessibleKeyList(KeyList& list) : QAccessibleWidget{&list, QAccessible::ComboBox}, list_{list} {
        // The toolkit selects the chosen entry only when the list is opened, and announces each selection,
        // also in a list that is not shown.
        const auto select = [&list] {
            const QSignalBlocker quiet{list.view()->selectionModel()};
            list.view()->setCurrentIndex(list.model()->index(list.currentIndex(), 0));
        };
        QObject::connect(&list, &KeyList::currentIndexChanged, list.view(), select);
        select();
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }
    QString text(int from, int to) const override { return list_.currentText().mid(from, to - from); }
    int characterCount() const override { return static_cast<int>(list_.currentText().size()); }
    void selection(int /*index*/, int* from, int* to) const override { *from = *to = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int /*from*/, int /*to*/) override {}
    void removeSelection(int /*index*/) override {}
    void setSelection(int /*index*/, int /*from*/, int /*to*/) override {}
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int /*position*/) override {}
    QRect characterRect(int /*offset*/) const override { return rect(); }
    int offsetAtPoint(const QPoint& /*point*/) const override { return 0; }
    void scrollToSubstring(int /*from*/, int /*to*/) override {}
    QString attributes(int /*offset*/, int* from, int* to) const override {
        *from = 0;
        *to = characterCount();
        return {};
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? list_.currentText() : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.hasPopup = true;
        state.expanded = list_.view()->isVisible();
        state.collapsed = !state.expanded;
        return state;
    }
    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(list_.view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == list_.view() ? 0 : -1;
    }
    QStringList actionNames() const override {
        return QStringList{showMenuAction(), pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name != showMenuAction() && name != pressAction()) {
            QAccessibleWidget::doAction(name);
            return;
        }
        if (list_.view()->isVisible()) {
            list_.hidePopup();
        } else {
            list_.showPopup();
        }
    }

  private:
    KeyList& list_;
};

/// A text that a screen reader does not speak.
class UnspokenText final : public QAccessibleWidget {
  public:
    explicit UnspokenText(TextLabel& label) : QAccessibleWidget{&label, QAccessible::StaticText} {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = true;
        return state;
    }
};

/// A text that gets the focus from the program, but not by the Tab key.
class Heading final : public QAccessibleWidget {
  public:
    explicit Heading(TextLabel& label) : QAccessibleWidget{&label, QAccessible::StaticText}, label_{label} {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? label_.text() : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true;
        return state;
    }

  private:
    const TextLabel& label_;
};

/// A button with a running state. To the toolkit, a button that can stay pressed is a check box.
class AccessibleShowButton final : public QAccessibleWidget {
  public:
    explicit AccessibleShowButton(ShowButton& button)
        : QAccessibleWidget{&button, QAccessible::Button}, button_{button} {}

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
            case QAccessible::Name:
                return button_.text();
            case QAccessible::Description:
                return button_.isRunning() ? QStringLiteral("running") : QString{};
            case QAccessible::Accelerator:
                return button_.shortcut().toString();
            default:
                return QAccessibleWidget::text(kind);
        }
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = button_.isDown();
        return state;
    }
    QStringList actionNames() const override {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            button_.animateClick();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }
    QStringList keyBindingsForAction(const QString& name) const override {
        return name == pressAction() ? QStringList{button_.shortcut().toString()} : QStringList{};
    }

  private:
    ShowButton& button_;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* const label = qobject_cast<TextLabel*>(object);
    if (label != nullptr && label->role() == TextRole::DialogTitle) {
        return new UnspokenText{*label};
    }
    if (label != nullptr && label->isHeading()) {
        return new Heading{*label};
    }
    if (qobject_cast<SpokenText*>(object) != nullptr) {
        return new QAccessibleWidget{static_cast<QWidget*>(object), QAccessible::Notification};
    }
    if (qobject_cast<ChoiceGroup*>(object) != nullptr) {
        return new QAccessibleWidget{static_cast<QWidget*>(object), QAccessible::Grouping};
    }
    if (qobject_cast<QStackedWidget*>(object) != nullptr) {
        // Otherwise a screen reader calls it a layered pane.
        return new QAccessibleWidget{static_cast<QWidget*>(object), QAccessible::Client};
    }
    if (auto* button = qobject_cast<ShowButton*>(object)) {
        return new AccessibleShowButton{*button};
    }
    if (auto* bar = qobject_cast<ProgressBarWidget*>(object)) {
        return new AccessibleBar{*bar};
    }
    if (auto* slider = qobject_cast<StepSlider*>(object)) {
        return new AccessibleSlider{*slider};
    }
    if (auto* list = qobject_cast<KeyList*>(object)) {
        return new AccessibleKeyList{*list};
    }
    if (qobject_cast<IndicatorWidget*>(object) != nullptr || qobject_cast<LogoWidget*>(object) != nullptr) {
        return new QAccessibleWidget{static_cast<QWidget*>(object), QAccessible::Graphic};
    }
    return nullptr;
}

}  // namespace

void installAccessibleControls() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace velmorindal
