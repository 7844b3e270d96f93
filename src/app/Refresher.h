#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "ChangeNotifier.h"

namespace velmorindal {

/// Answers announced changes, from whichever thread, with one call of `refresh` on the next turn of the event
/// loop of the thread that this object lives on.
///
/// An announcement comes before its change. On the thread of this object the change is in place by the next
/// turn; the model lets one that it makes on another thread be followed by one on the main thread.
class Refresher final : public QObject {
    Q_OBJECT

  public:
    Refresher(const std::vector<ChangeNotifier*>& watched, std::function<void()> refresh);
    ~Refresher() override;

  protected:
    bool event(QEvent* event) override;

  private:
    struct Link;

    std::function<void()> refresh_;
    /// Shared with the observers: an announcement that is under way elsewhere may outlive this object.
    std::shared_ptr<Link> link_;
    std::vector<ChangeNotifier::Subscription> subscriptions_;
};

}  // namespace velmorindal
