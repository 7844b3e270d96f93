#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "Fault.h"

namespace velmorindal {

/// Faults for the occurrences of something, counted from 1. A fault for one occurrence overrides the fault
/// for all. Not safe from several threads.
class FaultScript {
  public:
    /// Later calls override earlier ones.
    void onOccurrence(std::size_t occurrence, Fault fault);
    void onEvery(Fault fault);

    std::size_t occurrences() const { return occurrences_; }
    /// Counts an occurrence.
    void count() { ++occurrences_; }
    /// Changes the plan for the occurrence counted last.
    void bend(AnswerPlan& plan) const;

  private:
    std::map<std::size_t, Fault> single_;
    std::optional<Fault> every_;
    std::size_t occurrences_ = 0;
};

/// One script for each type byte, known or not.
using FaultScripts = std::array<FaultScript, 256>;

}  // namespace velmorindal
