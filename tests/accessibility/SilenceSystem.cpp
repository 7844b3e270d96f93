#include "SilenceSystem.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace velmorindal {
namespace {

constexpr std::chrono::milliseconds glance{20};
/// More than the program waits for any answer.
constexpr std::chrono::seconds patience{3};

}  // namespace

SilenceSystem::SilenceSystem(std::filesystem::path file) : file_{std::move(file)}, past_{silences()} {}

SilenceSystem::Clock::time_point SilenceSystem::now() {
    const Lock lock{mutex_};
    return now_;
}

bool SilenceSystem::wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) {
    if (readiness == Readiness::toWrite || !until) {
        return UnhurriedSystem::wait(descriptor, readiness, until);
    }
    // Ends in real time too, so that a reader notices a closed port.
    const auto end = Clock::now() + (*until - now());
    while (!UnhurriedSystem::wait(descriptor, readiness,
                                  now() + std::min<Clock::duration>(end - Clock::now(), glance))) {
        const Lock lock{mutex_};
        if (past_ < silences()) {
            ++past_;
            now_ += patience;
            return false;
        }
        if (end <= Clock::now()) {
            return false;
        }
    }
    return true;
}

std::uintmax_t SilenceSystem::silences() const {
    std::error_code missing;
    const auto size = std::filesystem::file_size(file_, missing);
    return missing ? 0 : size;
}

}  // namespace velmorindal
