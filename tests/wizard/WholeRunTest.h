#pragma once

#include <gtest/gtest.h>

#include "InProcessDongle.h"
#include "TemporaryDirectory.h"
#include "VirtualWizardDriver.h"

namespace velmorindal {

/// The real widgets beside one simulated dongle, on virtual time.
class WholeRunTest : public testing::Test, protected VirtualWorld {
  protected:
    TemporaryDirectory directory;
    InProcessDongle dongle{system, directory.path()};
    VirtualWizardDriver driver{directory.path(), *this};
};

}  // namespace velmorindal
