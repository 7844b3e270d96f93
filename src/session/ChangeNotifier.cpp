#include "ChangeNotifier.h"

#include <utility>

namespace velmorindal {

ChangeNotifier::Subscription ChangeNotifier::subscribe(std::function<void()> observer) {
    auto subscription = std::make_shared<const std::function<void()>>(std::move(observer));
    const Lock lock{mutex_};
    std::erase_if(observers_, [](const auto& entry) { return entry.expired(); });
    observers_.push_back(subscription);
    return subscription;
}

void ChangeNotifier::announce() const {
    std::vector<Subscription> current;
    {
        const Lock lock{mutex_};
        for (const auto& entry : observers_) {
            if (auto observer = entry.lock()) {
                current.push_back(std::move(observer));
            }
        }
    }
    for (const Subscription& observer : current) {
        (*observer)();
    }
}

}  // namespace velmorindal
