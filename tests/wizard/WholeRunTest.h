#pragma once

#include <gtest/gtest.h>

#include "support/InProcessDongle.h"
#include "support/TemporaryDirectory.h"
#include "wizard/VirtualWizardDriver.h"

namespace velmorindal {

/// The real widgets beside one simulated dongle, on virtual time.
class WholeRunTest : public testing::Test, protected VirtualWorld {
  protected:
    TemporaryDirectory directory;
    InProcessDongle dongle{system, directory.path()};
    VirtualWizardDriver driver{directory.path(), *this};
};

}  // namespace velmorindal
