#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "Fault.h"

namespace velmorindal {

/// Which fault meets which occurrence of something, counted from 1. A fault for one occurrence goes before a
/// fault for every one. Not safe from several threads.
class FaultScript {
  public:
    void onOccurrence(std::size_t occurrence, Fault fault);
    void onEvery(Fault fault);
    void forget();

    std::size_t occurrences() const { return occurrences_; }
    /// Counts an occurrence.
    void count() { ++occurrences_; }
    /// Bends what is planned for the occurrence counted last.
    void bend(AnswerPlan& plan) const;

  private:
    std::map<std::size_t, Fault> single_;
    std::optional<Fault> every_;
    std::size_t occurrences_ = 0;
};

/// One script for each type byte, known or not.
using FaultScripts = std::array<FaultScript, 256>;

}  // namespace velmorindal
