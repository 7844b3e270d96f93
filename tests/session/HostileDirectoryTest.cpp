#include <filesystem>
#include <fstream>

#include "ChildProcess.h"
#include "ForkedChild.h"
#include "PortHolders.h"
#include "SessionTest.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

constexpr const char* noDongleLine = "No dongles found. Quitting.\n";

/// Places that hold no dongle.
class HostileDirectory : public testing::Test {
  protected:
    /// What connecting prints, with the dongle looked for in `place`; also that it fails for want of a
    /// dongle.
    static std::string printedBy(const fs::path& place) {
        ManualDispatch dispatch;
        PosixSystem system;
        VelmorindalSwitch velmorindal{dispatch, system, {.directory = place.string() + "/"}};
        PrintedLines lines;
        EXPECT_FALSE(dispatch.finish([&] { return velmorindal.connect(); }));
        EXPECT_EQ(velmorindal.lastError.get(), noDongleText);
        EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
        return lines.take();
    }

    /// The same as a user without special rights.
    static std::string printedToOrdinaryUserBy(const fs::path& place) {
        // What another process prints is seen at the descriptor alone.
        testing::internal::CaptureStdout();
        const int status = asOrdinaryUser([&] {
            ManualDispatch dispatch;
            PosixSystem system;
            VelmorindalSwitch velmorindal{dispatch, system, {.directory = place.string() + "/"}};
            return !velmorindal.connect() && velmorindal.lastError.get() == noDongleText ? 0 : 1;
        });
        EXPECT_EQ(status, 0);
        return testing::internal::GetCapturedStdout();
    }

    void add(const std::string& name) const { std::ofstream{directory.path() / name}; }
    void allow(unsigned mode) const { fs::permissions(directory.path(), fs::perms{mode}); }

    TemporaryDirectory directory;
};

TEST_F(HostileDirectory, ThatIsMissingOrAFileOrALinkToItselfHoldsNoDongle) {
    add("cu.usbmodem1");
    fs::create_symlink(directory.path() / "loop", directory.path() / "loop");
    for (const char* const name : {"missing", "cu.usbmodem1", "loop"}) {
        EXPECT_EQ(printedBy(directory.path() / name), noDongleLine) << name;
    }
}

TEST_F(HostileDirectory, ThatMayNotBeReadHoldsNoDongle) {
    add("cu.usbmodem1");
    allow(0711);
    EXPECT_EQ(printedToOrdinaryUserBy(directory.path()), noDongleLine);
}

TEST_F(HostileDirectory, WhoseEntriesMayNotBeLookedAtHoldsNoDongle) {
    add("cu.usbmodem1");
    allow(0744);
    EXPECT_EQ(printedToOrdinaryUserBy(directory.path()), "Open Result:  -1\n" + std::string{noDongleLine});
}

TEST_F(HostileDirectory, InsideAnotherThatMayNotBeReadHidesNothingElse) {
    fs::create_directory(directory.path() / "cu.usbmodem-closed");
    fs::permissions(directory.path() / "cu.usbmodem-closed", fs::perms{0700});
    add("cu.usbmodem1");
    allow(0755);
    EXPECT_EQ(printedToOrdinaryUserBy(directory.path()),
              "Open Result:  -1\nOpen Result:  -1\n" + std::string{noDongleLine});
}

class ADongleThatAnotherProgramHolds : public TerminalSessionTest,
                                       public testing::WithParamInterface<const char*> {};

TEST_P(ADongleThatAnotherProgramHolds, IsNotFoundUntilItIsLetGo) {
    ChildProcess other{python(GetParam(), {dongle.path().string()})};
    ASSERT_TRUE(other.says("held")) << other.output();
    PrintedLines lines;
    EXPECT_FALSE(connect());
    EXPECT_EQ(velmorindal.lastError.get(), noDongleText);
    EXPECT_EQ(lines.take(), "Open Result:  -1\n" + std::string{noDongleLine});
    EXPECT_THAT(dongle.receivedFrames(), testing::IsEmpty());

    ASSERT_EQ(other.finish(), 0) << other.output();
    EXPECT_TRUE(connect());
}

INSTANTIATE_TEST_SUITE_P(HostileDirectory, ADongleThatAnotherProgramHolds,
                         testing::Values(holdByLock, holdByExclusiveMode),
                         [](const auto& test) { return nameOfHolder(test.param); });

}  // namespace
}  // namespace velmorindal
