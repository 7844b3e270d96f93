// Takes the whole tour through the real wizard and prints how long the program takes to handle an event, and
// which events take longest: during that time the window neither repaints nor reacts.
//
// usage: benchmark-events     (needs a display or QT_QPA_PLATFORM=offscreen)

#include <QApplication>
#include <QEvent>
#include <QMetaEnum>
#include <QStandardPaths>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "ApplicationSetup.h"
#include "TemporaryDirectory.h"
#include "Tour.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Handled {
    double milliseconds;
    std::string what;
};

std::string nameOf(const QEvent& event) {
    const char* const name = QMetaEnum::fromType<QEvent::Type>().valueToKey(event.type());
    return name == nullptr ? std::to_string(event.type()) : name;
}

/// Measures the time to handle each event, including the events that are delivered meanwhile.
class TimedApplication final : public QApplication {
  public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (depth_ > 0) {
            return QApplication::notify(receiver, event);
        }
        // Before the call, since the event may destroy its receiver.
        const std::string what = nameOf(*event) + " of " + receiver->metaObject()->className() + " " +
                                 receiver->property("text").toString().toStdString();
        ++depth_;
        const auto start = Clock::now();
        const bool result = QApplication::notify(receiver, event);
        const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
        --depth_;
        handled.push_back({.milliseconds = taken.count(), .what = what});
        return result;
    }

    std::vector<Handled> handled;

  private:
    int depth_ = 0;
};

void report(std::vector<Handled> handled) {
    std::ranges::sort(handled, std::greater{}, &Handled::milliseconds);
    const auto longer =
        std::ranges::count_if(handled, [](const Handled& one) { return one.milliseconds > 8.0; });
    std::fprintf(stderr, "%zu events, %td of them longer than 8 ms; one in a hundred longer than %.2f ms\n",
                 handled.size(), longer, handled.at(handled.size() / 100).milliseconds);
    constexpr std::size_t shown = 12;
    for (const Handled& one : std::span{handled}.first(std::min(shown, handled.size()))) {
        std::fprintf(stderr, "%8.2f ms  %s\n", one.milliseconds, one.what.c_str());
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    QStandardPaths::setTestModeEnabled(true);
    TimedApplication application{argc, argv};
    velmorindal::setUpApplication();
    try {
        const velmorindal::TemporaryDirectory pictures;
        const velmorindal::TemporaryDirectory work;
        velmorindal::Tour tour{pictures.path(), work.path(), [](QWidget&) {}};
        tour.programADevice();
        tour.loadTheSettingsAgain();
        tour.meetTheFailures();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return EXIT_FAILURE;
    }
    report(std::move(application.handled));
    return EXIT_SUCCESS;
}
