#include "session/VelmorindalSwitch.h"

#include <utility>

namespace velmorindal {

VelmorindalSwitch::VelmorindalSwitch(Dispatch& dispatch, System& system, DongleSearch search)
    : dispatch_{dispatch}, system_{system}, search_{std::move(search)} {}

VelmorindalSwitch::~VelmorindalSwitch() = default;

}  // namespace velmorindal
