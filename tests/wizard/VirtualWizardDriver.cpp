#include "VirtualWizardDriver.h"

#include <QApplication>
#include <chrono>

namespace velmorindal {
namespace {

constexpr std::chrono::milliseconds step{1};

}  // namespace

VirtualWizardDriver::VirtualWizardDriver(const std::filesystem::path& deviceDirectory, VirtualWorld& world)
    : WizardDriver{deviceDirectory, world.dispatch, world.system}, world_{world} {}

VirtualWizardDriver::~VirtualWizardDriver() {
    shutDown(
        [this](const std::function<bool()>& condition) { return VirtualWizardDriver::reaches(condition); });
    world_.end();
}

bool VirtualWizardDriver::reaches(const std::function<bool()>& condition) {
    const auto end = world_.system.now() + ScheduledDispatch::bound;
    while (true) {
        QApplication::processEvents();
        if (condition()) {
            return true;
        }
        if (world_.system.now() >= end) {
            return false;
        }
        world_.system.sleepFor(step);
        world_.dispatch.runPendingMainWork();
    }
}

}  // namespace velmorindal
