#include "DongleSearch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DongleSearchTest : public testing::Test {
  protected:
    void add(const std::string& name) {
        std::filesystem::create_directories((directory.path() / name).parent_path());
        std::ofstream{directory.path() / name};
    }
    std::string path(const std::string& name) const { return (directory.path() / name).string(); }

    TemporaryDirectory directory;
    DongleSearch search{.directory = directory.path().string() + "/"};
};

TEST_F(DongleSearchTest, KeepsTheNamesThatStartLikeADongle) {
    add("cu.usbmodem1");
    add("cu.usbmodem");
    add("cu.usbserial");
    add("my-cu.usbmodem");
    add("CU.USBMODEM");
    EXPECT_THAT(search.candidates(), UnorderedElementsAre(path("cu.usbmodem1"), path("cu.usbmodem")));
}

TEST_F(DongleSearchTest, ComparesTheNameRelativeToTheDirectorySoThatASubdirectoryHidesItsEntries) {
    add("other/cu.usbmodem1");
    EXPECT_THAT(search.candidates(), IsEmpty());
}

TEST_F(DongleSearchTest, DescendsIntoADirectoryThatIsNamedLikeADongle) {
    add("cu.usbmodem-hub/port");
    EXPECT_THAT(search.candidates(),
                UnorderedElementsAre(path("cu.usbmodem-hub"), path("cu.usbmodem-hub/port")));
}

TEST_F(DongleSearchTest, ListsALinkButDoesNotFollowIt) {
    add("elsewhere/port");
    std::filesystem::create_directory_symlink(directory.path() / "elsewhere",
                                              directory.path() / "cu.usbmodem-link");
    EXPECT_THAT(search.candidates(), UnorderedElementsAre(path("cu.usbmodem-link")));
}

TEST_F(DongleSearchTest, KeepsNamesWithBlanksLineFeedsAndBytesThatAreNoText) {
    add("cu.usbmodem a\nb");
    add("cu.usbmodem\xFF\xFE");
    EXPECT_THAT(search.candidates(),
                UnorderedElementsAre(path("cu.usbmodem a\nb"), path("cu.usbmodem\xFF\xFE")));
}

TEST_F(DongleSearchTest, FindsNothingWhereThereIsNoDirectory) {
    search.directory = path("missing");
    EXPECT_THAT(search.candidates(), IsEmpty());
    add("file");
    search.directory = path("file");
    EXPECT_THAT(search.candidates(), IsEmpty());
}

TEST_F(DongleSearchTest, AddsTheSlashThatADirectoryIsGivenWithout) {
    add("cu.usbmodem1");
    search.directory = directory.path().string();
    EXPECT_THAT(search.candidates(), UnorderedElementsAre(path("cu.usbmodem1")));
}

TEST_F(DongleSearchTest, LooksForAnotherPrefixWhenAskedTo) {
    add("ttyACM0");
    add("cu.usbmodem1");
    search.prefix = "ttyACM";
    EXPECT_THAT(search.candidates(), UnorderedElementsAre(path("ttyACM0")));
}

TEST(DongleSearchEnvironment, OverridesTheDefaultsWhereItIsSet) {
    unsetenv("VELMORINDAL_DEVICE_DIRECTORY");
    setenv("VELMORINDAL_DEVICE_PREFIX", "", 1);
    EXPECT_EQ(DongleSearch::fromEnvironment().directory, "/dev/");
    EXPECT_EQ(DongleSearch::fromEnvironment().prefix, "cu.usbmodem");
    setenv("VELMORINDAL_DEVICE_DIRECTORY", "/run/dongles", 1);
    setenv("VELMORINDAL_DEVICE_PREFIX", "ttyACM", 1);
    EXPECT_EQ(DongleSearch::fromEnvironment().directory, "/run/dongles");
    EXPECT_EQ(DongleSearch::fromEnvironment().prefix, "ttyACM");
    unsetenv("VELMORINDAL_DEVICE_DIRECTORY");
    unsetenv("VELMORINDAL_DEVICE_PREFIX");
}

TEST_F(DongleSearchTest, KeepsTheOrderOfTheDirectory) {
    for (const char* name : {"5", "2", "8", "1", "7", "3", "6", "4"}) {
        add(std::string{"cu.usbmodem"} + name);
    }
    std::vector<std::string> order;
    for (const auto& entry : std::filesystem::directory_iterator{directory.path()}) {
        order.push_back(entry.path().string());
    }

    EXPECT_THAT(search.candidates(), ElementsAreArray(order));
}

}  // namespace
}  // namespace velmorindal
