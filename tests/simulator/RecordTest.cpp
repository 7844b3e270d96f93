#include "Record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = RecordedEvent::Kind;
using namespace std::chrono_literals;

class RecordTest : public testing::Test {
  protected:
    std::vector<RecordedEvent> read(const std::string& text) const {
        std::ofstream{file, std::ios::binary} << text;
        return readRecord(file);
    }
    /// What is said of a file with this text, without its name.
    std::string complaintAbout(const std::string& text) const {
        try {
            read(text);
        } catch (const RecordError& error) {
            const std::string complaint = error.what();
            EXPECT_TRUE(complaint.starts_with(file.string() + ":")) << complaint;
            return complaint.substr(file.string().size() + 1);
        }
        return "none";
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "record";
};

TEST_F(RecordTest, EveryKindOfLineIsRead) {
    EXPECT_THAT(
        read("Velmorindal record 1\n"
             "# from the clinic\n"
             "\n"
             "0.000 1 refused\n"
             "0.010 2 open\n"
             "1.234 2 > 63 62 73 00\n"
             "1.240 2 < 72 62 73 01 ff\n"
             "20.000 2 lost\n"
             "20.000 2 close\n"),
        ElementsAre(
            RecordedEvent{.kind = Kind::refused, .time = 0ms, .port = 1, .bytes = {}, .line = 4},
            RecordedEvent{.kind = Kind::opened, .time = 10ms, .port = 2, .bytes = {}, .line = 5},
            RecordedEvent{
                .kind = Kind::fromHost, .time = 1234ms, .port = 2, .bytes = {0x63, 0x62, 0x73, 0}, .line = 6},
            RecordedEvent{.kind = Kind::fromDevice,
                          .time = 1240ms,
                          .port = 2,
                          .bytes = {0x72, 0x62, 0x73, 1, 0xFF},
                          .line = 7},
            RecordedEvent{.kind = Kind::lost, .time = 20s, .port = 2, .bytes = {}, .line = 8},
            RecordedEvent{.kind = Kind::closed, .time = 20s, .port = 2, .bytes = {}, .line = 9}));
}

TEST_F(RecordTest, ARecordInWhichNothingHappenedIsRead) {
    EXPECT_THAT(read("Velmorindal record 1\n"), IsEmpty());
}

TEST_F(RecordTest, AnEmptyFileAndAForeignOneAreRefusedAtTheirFirstLine) {
    const std::string foreign = "1: this is no record: its first line is not 'Velmorindal record 1'";
    EXPECT_EQ(complaintAbout(""), "1: the file is empty");
    EXPECT_EQ(complaintAbout("\n"), foreign);
    EXPECT_EQ(complaintAbout("Velmorindal record 1"), foreign);
    EXPECT_EQ(complaintAbout("Velmorindal record 2\n"), foreign);
    EXPECT_EQ(complaintAbout("<?xml version=\"1.0\"?>\n"), foreign);
    EXPECT_EQ(complaintAbout(std::string(100, '\0')), foreign);
}

TEST_F(RecordTest, ATornLineIsRefusedWithItsNumber) {
    EXPECT_EQ(complaintAbout("Velmorindal record 1\n0.000 1 open\n0.100 1 > 63 62"),
              "3: the file ends within this line");
}

TEST_F(RecordTest, ALineThatIsNoneOfARecordIsRefusedWithItsNumber) {
    for (const char* const line :
         {"1", "0.000 1", "0.000 1 shut", "0.000 1 open 00", "0.000 1 >", "0.000 1 > 6", "0.000 1 > 633",
          "0.000 1 > 63  62", "0.000 1 > 63 zz", "0.00 1 open", ".000 1 open", "0.000 -1 open",
          "-1.000 1 open", "0,000 1 open", " 0.000 1 open", "0.000 1 open\r", "99999999999.000 1 open"}) {
        EXPECT_EQ(complaintAbout("Velmorindal record 1\n0.000 1 open\n" + std::string{line} + "\n"),
                  "3: this is no line of a record")
            << line;
    }
}

TEST_F(RecordTest, TimeThatGoesBackIsRefused) {
    EXPECT_EQ(complaintAbout("Velmorindal record 1\n1.000 1 open\n0.999 1 close\n"), "3: the time goes back");
}

TEST_F(RecordTest, AFileThatIsMissingOrCannotBeReadIsRefusedWithItsName) {
    EXPECT_THAT([this] { readRecord(directory.path() / "missing"); },
                testing::ThrowsMessage<RecordError>((directory.path() / "missing").string() +
                                                    ": No such file or directory"));
    EXPECT_THAT([this] { readRecord(directory.path()); },
                testing::ThrowsMessage<RecordError>(directory.path().string() + ": cannot be read"));
}

TEST_F(RecordTest, ItsEventsAreSortedByThePortsThatWereOpened) {
    const auto ports = eventsByPort(
        read("Velmorindal record 1\n0.000 1 refused\n0.000 2 open\n0.000 3 open\n0.001 2 close\n"));
    ASSERT_EQ(ports.size(), 2U);
    EXPECT_EQ(ports.at(2).size(), 2U);
    EXPECT_EQ(ports.at(3).size(), 1U);
}

}  // namespace
}  // namespace velmorindal
