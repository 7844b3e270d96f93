#include "Announcer.h"

#include <gmock/gmock.h>

#include <QEvent>
#include <QStringList>

namespace velmorindal {
namespace {

/// Notes under which name an object becomes shown.
class NamesShown final : public QObject {
  public:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            names << static_cast<QWidget*>(object)->accessibleName();
        }
        return false;
    }

    QStringList names;
};

TEST(Announcer, EveryTextIsTheNameOfAnObjectThatBecomesShownAlsoWhenTheObjectsAreUsedAgain) {
    QWidget window;
    Announcer announcer{&window};
    window.show();
    NamesShown shown;
    for (auto* text : announcer.findChildren<SpokenText*>()) {
        text->installEventFilter(&shown);
    }

    QStringList said;
    for (int number = 0; number < 40; ++number) {
        said << QString::number(number);
        announcer.say(said.back());
    }

    EXPECT_EQ(shown.names, said);
}

}  // namespace
}  // namespace velmorindal
