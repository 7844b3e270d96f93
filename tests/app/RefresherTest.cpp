#include "Refresher.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTest>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "QtDispatch.h"

namespace velmorindal {
namespace {

TEST(Refresher, ManyAnnouncementsInOneTurnMakeOneRefresh) {
    ChangeNotifier model;
    ChangeNotifier container;
    int refreshes = 0;
    const Refresher refresher{{&model, &container}, [&] { ++refreshes; }};

    model.announce();
    container.announce();
    model.announce();
    EXPECT_EQ(refreshes, 0);
    QCoreApplication::processEvents();

    EXPECT_EQ(refreshes, 1);
}

TEST(Refresher, AnAnnouncementDuringARefreshMakesAnotherOne) {
    ChangeNotifier model;
    int refreshes = 0;
    const Refresher refresher{{&model}, [&] {
                                  if (++refreshes == 1) {
                                      model.announce();
                                  }
                              }};

    model.announce();

    EXPECT_TRUE(QTest::qWaitFor([&] { return refreshes == 2; }, 600'000));
}

TEST(Refresher, ComesAfterWorkForTheMainThreadThatWasHandedOverLater) {
    QtDispatch dispatch;
    ChangeNotifier model;
    std::vector<std::string> order;
    const Refresher refresher{{&model}, [&] { order.emplace_back("refresh"); }};

    model.announce();
    dispatch.postToMain([&] { order.emplace_back("work"); });
    QCoreApplication::processEvents();

    EXPECT_THAT(order, testing::ElementsAre("work", "refresh"));
}

TEST(Refresher, NothingIsRefreshedOnceItIsGone) {
    ChangeNotifier model;
    int refreshes = 0;
    auto refresher = std::make_unique<Refresher>(std::vector{&model}, [&] { ++refreshes; });
    model.announce();

    refresher.reset();
    model.announce();
    QCoreApplication::processEvents();

    EXPECT_EQ(refreshes, 0);
}

}  // namespace
}  // namespace velmorindal
