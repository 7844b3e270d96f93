#include "Refresher.h"

#include <QCoreApplication>
#include <QEvent>
#include <utility>

#include "EventType.h"

namespace velmorindal {

namespace {

struct Refresh;

}  // namespace

struct Refresher::Link {
    /// Null once the refresher is destroyed.
    Refresher* refresher = nullptr;
    bool underWay = false;

    void announced() {
        if (refresher != nullptr && !std::exchange(underWay, true)) {
            // At low priority: the session's work on this thread comes first, since a device waits for it.
            QCoreApplication::postEvent(refresher, new QEvent{eventType<Refresh>()}, Qt::LowEventPriority);
        }
    }
};

Refresher::Refresher(const std::vector<ChangeNotifier*>& watched, std::function<void()> refresh)
    : refresh_{std::move(refresh)}, link_{std::make_shared<Link>()} {
    link_->refresher = this;
    for (ChangeNotifier* notifier : watched) {
        subscriptions_.push_back(notifier->subscribe([link = link_] { link->announced(); }));
    }
}

Refresher::~Refresher() {
    link_->refresher = nullptr;
}

bool Refresher::event(QEvent* event) {
    if (event->type() != eventType<Refresh>()) {
        return QObject::event(event);
    }
    link_->underWay = false;
    refresh_();
    return true;
}

}  // namespace velmorindal
