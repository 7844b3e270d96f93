#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "ChildProcess.h"
#include "ConnectionTest.h"
#include "PortHolders.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;
using Type = VelmorindalMessageType;

std::string systemText(int reason) {
    return std::generic_category().message(reason);
}

class DongleTroubleTest : public ConnectionTest {
  protected:
    /// What a search says on standard error, without the path at its start.
    std::string troubleOfASearch() {
        EXPECT_THAT(velmorindal.listDevices(), testing::IsEmpty());
        const std::string line = errors.take();
        EXPECT_TRUE(line.starts_with(path() + ": ")) << line;
        return line.substr(std::min(line.size(), path().size() + 2));
    }

    /// The same for a dongle whose open the system refuses.
    std::string troubleWhenOpeningFailsWith(int reason) {
        system.refuse(path(), reason);
        return troubleOfASearch();
    }

    void replaceNodeBy(const std::function<void(const fs::path&)>& make) {
        const fs::path node = path();
        dongle.unplug();
        make(node);
    }

    PrintedLines output;
    PrintedLines errors{PrintStream::standardError};
};

TEST_F(DongleTroubleTest, AUsableDongleLeavesNoLine) {
    EXPECT_TRUE(connect());
    EXPECT_EQ(errors.take(), "");
}

TEST_F(DongleTroubleTest, ABusyPortIsReportedWithTheProcessThatHoldsIt) {
    system.setHolder(path(), {.program = "ModemManager", .process = 812});
    EXPECT_EQ(
        troubleWhenOpeningFailsWith(EBUSY),
        "could not be opened: Device or resource busy. The program \"ModemManager\", process 812, holds "
        "it: end it, or wait until it lets go.\n");
}

TEST_F(DongleTroubleTest, ABusyPortWithAnUnknownHolderIsReportedWithTheWayToFindIt) {
    EXPECT_EQ(troubleWhenOpeningFailsWith(EBUSY),
              "could not be opened: Device or resource busy. Another program holds it: 'sudo fuser -v " +
                  path() + "' names it.\n");
}

TEST_F(DongleTroubleTest, APortThatThisProgramHoldsIsReportedAsItsOwn) {
    system.setHolder(path(), {.program = "velmorindal-set", .process = ::getpid()});
    EXPECT_EQ(troubleWhenOpeningFailsWith(EBUSY),
              "could not be opened: Device or resource busy. This program holds it since an earlier attempt: "
              "close it and start it again.\n");
}

TEST_F(DongleTroubleTest, ARefusedAccessIsReportedWithTheGroupOfTheNode) {
    // The node of a dongle in this process is the null device.
    EXPECT_EQ(troubleWhenOpeningFailsWith(EACCES),
              "could not be opened: Permission denied. It belongs to the group root: join it with 'sudo "
              "adduser \"$USER\" root', then log out and in again.\n");
}

TEST_F(DongleTroubleTest, APortThatVanishedOrFailsIsReportedWithTheAdviceToReplug) {
    for (const int reason : {ENOENT, ENXIO, EIO}) {
        EXPECT_EQ(troubleWhenOpeningFailsWith(reason), "could not be opened: " + systemText(reason) +
                                                           ". Unplug the dongle and plug it in again.\n");
    }
}

TEST_F(DongleTroubleTest, TooManyOpenFilesAreReportedWithTheAdviceToRestart) {
    EXPECT_EQ(troubleWhenOpeningFailsWith(EMFILE),
              "could not be opened: Too many open files. Close this program and start it again.\n");
}

TEST_F(DongleTroubleTest, APortThatIsStillBeingClosedIsReportedDuringTheWait) {
    system.openSlowly();
    EXPECT_LT(secondsTakenBy([this] { EXPECT_EQ(velmorindal.listDevices().size(), 1U); }), 5.0);
    const std::string line =
        path() +
        ": cannot be opened yet: the port is still being closed, by an earlier run of this program or by "
        "another one. Wait, or unplug the dongle, which ends that at once.\n";
    EXPECT_EQ(errors.take(), line);
    EXPECT_TRUE(connect());
    EXPECT_EQ(errors.take(), line + line) << "the search, and the opening of the dongle that was found";
}

TEST_F(DongleTroubleTest, AHeldCloseOfItsOwnSearchDelaysTheConnection) {
    system.closeSlowly(std::chrono::seconds{3});
    const double taken = secondsTakenBy([this] { EXPECT_TRUE(connect()); });
    EXPECT_GT(taken, 3.0);
    EXPECT_LT(taken, 4.0);
    EXPECT_EQ(errors.take(), "");
}

TEST_F(DongleTroubleTest, ALongHeldCloseOfItsOwnSearchIsReportedDuringTheWait) {
    system.closeSlowly(std::chrono::seconds{30});
    EXPECT_GT(secondsTakenBy([this] { EXPECT_TRUE(connect()); }), 30.0);
    EXPECT_EQ(errors.take(),
              path() +
                  ": cannot be opened yet: the port is still being closed, by an earlier run of this program "
                  "or by another one. Wait, or unplug the dongle, which ends that at once.\n");
}

TEST_F(DongleTroubleTest, ADongleThatIsTakenBetweenFindingAndOpeningIsReportedToo) {
    dongle.whenReceived([this](std::span<const std::uint8_t>) { system.refuse(path(), EBUSY); });
    EXPECT_FALSE(connect());
    EXPECT_EQ(velmorindal.lastError.get(),
              "Error connecting to the serial port. It might already be in use.");
    EXPECT_EQ(errors.take(), path() +
                                 ": could not be opened: Device or resource busy. Another program holds "
                                 "it: 'sudo fuser -v " +
                                 path() + "' names it.\n");
}

TEST_F(DongleTroubleTest, ASilentCandidateIsReported) {
    dongle.staySilentOn(Type::version);
    EXPECT_EQ(troubleOfASearch(),
              "asked for its version: no answer came. Unplug the dongle, plug it in again and start this "
              "program again.\n");
}

TEST_F(DongleTroubleTest, APartOfAnAnswerIsShown) {
    dongle.onFirst(Type::version, Fault::halfAHeader());
    EXPECT_EQ(troubleOfASearch(),
              "asked for its version: only the bytes \"rb\" came. Unplug the dongle, plug it in again and "
              "start this program again.\n");
}

TEST_F(DongleTroubleTest, AnotherDeviceIsReportedWithItsAnswer) {
    dongle.prepare([](DeviceState& device) { device.version = "A \"modem\" \x1b[2J\x7f\xc2\x9b\\"; });
    EXPECT_EQ(troubleOfASearch(),
              "asked for its version: it is no dongle but another device, which said \"A \\\"modem\\\" "
              "\\x1b[2J\\x7f\\xc2\\x9b\\\\\".\n");
}

TEST_F(DongleTroubleTest, AnAnswerThatIsNoTextIsShownByItsBytes) {
    dongle.onFirst(Type::version, Fault::answerWith({0x72, 0x62, 0x76, 0x02, 0xC3, 0x28}));
    EXPECT_EQ(troubleOfASearch(),
              "asked for its version: it is no dongle but another device, which said \"\\xc3(\".\n");
}

TEST_F(DongleTroubleTest, AQueryThatIsTakenInPartIsReportedWithItsLength) {
    system.cutWrite(Type::version, 1, 3);
    EXPECT_EQ(
        troubleOfASearch(),
        "asked for its version: it took only 3 of 4 bytes. Unplug the dongle, plug it in again and start "
        "this program again.\n");
}

TEST_F(DongleTroubleTest, AQueryThatTheSystemRefusesIsReportedWithItsReason) {
    system.cutWrite(Type::version, 1, -1);
    EXPECT_EQ(troubleOfASearch(),
              "asked for its version: it took only 0 of 4 bytes: Input/output error. Unplug the dongle, plug "
              "it in again and start this program again.\n");
}

TEST_F(DongleTroubleTest, ADonglePulledOutWhileItIsProbedIsReportedAsUnplugged) {
    dongle.onFirst(Type::version, Fault::unplugDuringAnswer());
    EXPECT_EQ(troubleOfASearch(), "asked for its version: it was unplugged. Plug the dongle in again.\n");
}

TEST_F(DongleTroubleTest, ANodeThatIsNoSerialPortIsReportedByItsKind) {
    replaceNodeBy([](const fs::path& node) { fs::create_directory(node); });
    EXPECT_EQ(troubleOfASearch(), "not opened: it is a directory and not a serial port.\n");
    replaceNodeBy([](const fs::path& node) {
        fs::remove(node);
        EXPECT_EQ(::mkfifo(node.c_str(), 0600), 0);
    });
    EXPECT_EQ(troubleOfASearch(), "not opened: it is a pipe and not a serial port.\n");
    replaceNodeBy([](const fs::path& node) {
        fs::remove(node);
        fs::create_symlink("nowhere", node);
    });
    EXPECT_EQ(troubleOfASearch(),
              "cannot be looked at: No such file or directory. Unplug the dongle and plug it in again.\n");
}

/// While it lives, this process has the rights of an ordinary user. Not in another process: opening a port
/// takes a thread, and a process that was forked beside a thread may start none.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (wasRoot_) {
            EXPECT_EQ(::setegid(nobody), 0);
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (wasRoot_) {
            EXPECT_EQ(::seteuid(0), 0);
            EXPECT_EQ(::setegid(group_), 0);
        }
    }

  private:
    static constexpr uid_t nobody = 65534;

    const bool wasRoot_ = ::geteuid() == 0;
    const gid_t group_ = ::getegid();
};

class DongleTroubleOnATerminal : public TerminalSessionTest {
  protected:
    std::string path() const { return dongle.path().string(); }

    /// What is said on standard error when an ordinary user looks for the dongle in vain.
    std::string troubleOfAnOrdinaryUser() {
        const OrdinaryUser user;
        EXPECT_THAT(velmorindal.listDevices(), testing::IsEmpty());
        return errors.take();
    }

    PrintedLines output;
    PrintedLines errors{PrintStream::standardError};
};

TEST_F(DongleTroubleOnATerminal, TheHolderOfAPortIsNamed) {
    for (const char* const holding : {holdByLock, holdByExclusiveMode}) {
        ChildProcess other{python(holding, {path()})};
        ASSERT_TRUE(other.says("held")) << other.output();
        EXPECT_THAT(velmorindal.listDevices(), testing::IsEmpty());
        EXPECT_THAT(errors.take(), testing::MatchesRegex(
                                       ".*: could not be opened: Device or resource busy. The program "
                                       "\"python3[^ ]*\", process [0-9]+, holds it: end it, or wait until it "
                                       "lets go.\n"));
        EXPECT_EQ(other.finish(), 0) << other.output();
    }
}

TEST_F(DongleTroubleOnATerminal, TheGroupOfAPortIsNamedToAnOrdinaryUser) {
    ASSERT_EQ(::chmod(path().c_str(), 0060), 0);
    struct stat node {};
    ASSERT_EQ(::stat(path().c_str(), &node), 0);
    const ::group* const owner = ::getgrgid(node.st_gid);
    const std::string group = owner != nullptr ? owner->gr_name : std::to_string(node.st_gid);
    fs::permissions(directory.path(), fs::perms{0755});
    const std::string line = troubleOfAnOrdinaryUser();
    EXPECT_EQ(line, path() + ": could not be opened: Permission denied. It belongs to the group " + group +
                        ": join it with 'sudo adduser \"$USER\" " + group +
                        "', then log out and in again.\n");
}

TEST_F(DongleTroubleOnATerminal, ADirectoryThatAnOrdinaryUserMayNotReadIsReported) {
    fs::permissions(directory.path(), fs::perms{0444});
    const std::string line = troubleOfAnOrdinaryUser();
    fs::permissions(directory.path(), fs::perms{0755});
    EXPECT_EQ(line, path() + ": cannot be looked at: Permission denied. Ask for access to its directory.\n");
}

TEST_F(DongleTroubleOnATerminal, APortThatNoGroupMayReadAndWriteIsReportedToAnOrdinaryUser) {
    fs::permissions(directory.path(), fs::perms{0755});
    for (const mode_t mode : {0000U, 0040U, 0020U}) {
        ASSERT_EQ(::chmod(path().c_str(), mode), 0);
        EXPECT_EQ(troubleOfAnOrdinaryUser(),
                  path() +
                      ": could not be opened: Permission denied. No group has access to it: install this "
                      "program's device rule, then plug the dongle in again.\n")
            << mode;
    }
}

}  // namespace
}  // namespace velmorindal
