#pragma once

#include <filesystem>
#include <functional>

#include "VirtualWorld.h"
#include "WizardDriver.h"

namespace velmorindal {

/// Drives the real widgets beside dongles of a virtual world. Every wait lets virtual time pass; real time
/// plays no part but where the toolkit itself takes some.
class VirtualWizardDriver final : public WizardDriver {
  public:
    /// `world` outlives the driver and is at its end with it.
    VirtualWizardDriver(const std::filesystem::path& deviceDirectory, VirtualWorld& world);
    ~VirtualWizardDriver() override;

    bool reaches(const std::function<bool()>& condition) override;

  private:
    VirtualWorld& world_;
};

}  // namespace velmorindal
