#include "QtDispatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <chrono>
#include <cstddef>
#include <exception>
#include <future>
#include <memory>
#include <thread>
#include <utility>

#include "EventType.h"
#include "Print.h"

namespace velmorindal {

namespace {

struct Wake;
struct Submitted;
struct Start;

constexpr std::chrono::milliseconds betweenTries{200};

}  // namespace

QtDispatch::QtDispatch() {
    untilNextTry_.setInterval(betweenTries);
    QObject::connect(&untilNextTry_, &QTimer::timeout, this, &QtDispatch::startBackgroundWork);
}

void QtDispatch::postToMain(Work work) {
    {
        const Lock lock{mutex_};
        queue_.push_back(std::move(work));
        if (std::exchange(woken_, true)) {
            return;
        }
    }
    QCoreApplication::postEvent(this, new QEvent{eventType<Wake>()});
}

void QtDispatch::runOnMainAndWait(Work work) {
    // Shared: the main thread may still be inside set_value() when the wait here is over.
    const auto done = std::make_shared<std::promise<void>>();
    postToMain([done, work = std::move(work)] {
        work();
        done->set_value();
    });
    done->get_future().wait();
}

void QtDispatch::runInBackground(Work work) {
    {
        const Lock lock{mutex_};
        toStart_.push_back(std::move(work));
    }
    postAfterRefresh(eventType<Submitted>());
}

void QtDispatch::postAfterRefresh(QEvent::Type type) {
    // At a lower priority than the events by which a window is refreshed and painted.
    QCoreApplication::postEvent(this, new QEvent{type}, Qt::LowEventPriority - 1);
}

void QtDispatch::startBackgroundWork() {
    try {
        const Lock lock{mutex_};
        for (; !toStart_.empty(); toStart_.pop_front()) {
            // At normal priority: at a lower one, work could miss the device's deadlines on a busy machine.
            std::thread{toStart_.front()}.detach();
        }
        untilNextTry_.stop();
    } catch (const std::exception& error) {
        if (!untilNextTry_.isActive()) {
            untilNextTry_.start();
            warn("No thread can be started for work with the device:", error.what());
        }
    }
}

void QtDispatch::runPendingMainWork() {
    // A wait on the main thread may be for it.
    startBackgroundWork();
    runQueue();
}

void QtDispatch::runQueue() {
    std::size_t submitted = 0;
    {
        const Lock lock{mutex_};
        submitted = queue_.size();
    }
    // Work may itself wait and run the queue, so there can be fewer pieces left than there were.
    for (; submitted > 0; --submitted) {
        const Work next = takeNext();
        if (!next) {
            return;
        }
        next();
    }
}

bool QtDispatch::event(QEvent* event) {
    if (event->type() == eventType<Submitted>()) {
        // What the refresh has changed is painted in the next pass of the event loop.
        postAfterRefresh(eventType<Start>());
        return true;
    }
    if (event->type() == eventType<Start>()) {
        startBackgroundWork();
        return true;
    }
    if (event->type() != eventType<Wake>()) {
        return QObject::event(event);
    }
    {
        const Lock lock{mutex_};
        woken_ = false;
    }
    runQueue();
    return true;
}

Work QtDispatch::takeNext() {
    const Lock lock{mutex_};
    if (queue_.empty()) {
        return {};
    }
    Work next = std::move(queue_.front());
    queue_.pop_front();
    return next;
}

}  // namespace velmorindal
