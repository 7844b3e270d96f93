#include "session/VelmorindalSwitch.h"

#include <utility>

namespace velmorindal {

VelmorindalSwitch::VelmorindalSwitch(Dispatch& dispatch, DongleSearch search)
    : dispatch_{dispatch}, search_{std::move(search)} {}

VelmorindalSwitch::~VelmorindalSwitch() = default;

}  // namespace velmorindal
