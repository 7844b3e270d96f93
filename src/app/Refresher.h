#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "ChangeNotifier.h"

namespace velmorindal {

/// Answers announced changes with one call of `refresh` on the next turn of the event loop: an announcement
/// comes before its change, which is made by then. Work posted to the main thread meanwhile comes first. Main
/// thread only, as the announcements are.
class Refresher final : public QObject {
    Q_OBJECT

  public:
    /// Subscribes to all of `watched`.
    Refresher(const std::vector<ChangeNotifier*>& watched, std::function<void()> refresh);
    ~Refresher() override;

  protected:
    bool event(QEvent* event) override;

  private:
    struct Link;

    std::function<void()> refresh_;
    /// Shared with the observers: another observer of the same announcement may destroy this object.
    std::shared_ptr<Link> link_;
    std::vector<ChangeNotifier::Subscription> subscriptions_;
};

}  // namespace velmorindal
