#include "FaultScript.h"

#include <utility>

namespace velmorindal {

void FaultScript::onOccurrence(std::size_t occurrence, Fault fault) {
    single_.insert_or_assign(occurrence, std::move(fault));
}

void FaultScript::onEvery(Fault fault) {
    every_ = std::move(fault);
}

void FaultScript::bend(AnswerPlan& plan) const {
    const auto single = single_.find(occurrences_);
    if (single != single_.end()) {
        single->second.bend(plan);
    } else if (every_) {
        every_->bend(plan);
    }
}

}  // namespace velmorindal
