#include <gtest/gtest.h>

#include <filesystem>

#include "DongleSearch.h"
#include "TemporaryDirectory.h"
#include "VirtualDongle.h"
#include "WizardDriver.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

/// A device directory as the rule of the package leaves it: the kernel's name for the port, and a link to it
/// of the name that the wizard looks for. The port itself is a simulated dongle's.
class DongleLinkTest : public testing::Test {
  protected:
    DongleLinkTest() {
        fs::create_directory(devices());
        fs::create_symlink(dongle.path(), devices() / "ttyACM0");
        fs::create_symlink("ttyACM0", devices() / "cu.usbmodem0");
    }
    fs::path devices() const { return directory.path() / "dev"; }

    TemporaryDirectory directory;
    VirtualDongle dongle{directory.path()};
};

TEST_F(DongleLinkTest, TheWizardProgramsADeviceThroughTheLink) {
    WizardDriver driver{devices()};
    driver.walkTo(wizardState::Summary);
    driver.press("Save");
    driver.press("Yes");

    EXPECT_EQ(driver.dialog().title, "Write Configuration File?");
    driver.press("No");
    EXPECT_EQ(dongle.state().timesStored, 1U);
    EXPECT_EQ(driver.velmorindal().serialPort.get()->path, (devices() / "cu.usbmodem0").string());
}

TEST_F(DongleLinkTest, ADongleIsListedOnceThoughItHasTwoNames) {
    EXPECT_EQ(DongleSearch{.directory = devices().string()}.candidates(),
              std::vector{(devices() / "cu.usbmodem0").string()});
}

TEST_F(DongleLinkTest, LinksThatLeadInACircleOrNowhereEndTheSearchNeitherEarlyNorNever) {
    fs::create_symlink("cu.usbmodem1", devices() / "cu.usbmodem1");
    fs::create_symlink("ttyACM2", devices() / "cu.usbmodem2");
    fs::create_directory_symlink(devices(), devices() / "cu.usbmodem-all");
    fs::create_directory_symlink("/", devices() / "root");

    WizardDriver driver{devices()};
    driver.walkTo(wizardState::Mode);

    EXPECT_EQ(driver.velmorindal().connectionState.get(), ConnectionStatus::connected);
    EXPECT_EQ(DongleSearch{.directory = devices().string()}.candidates().size(), 4U);
}

}  // namespace
}  // namespace velmorindal
