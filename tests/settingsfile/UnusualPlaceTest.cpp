#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "ForkedChild.h"
#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view failed = "Write failed. Boo.\n";

class UnusualPlace : public SettingsFileTest {
  protected:
    void expectSaveFails(const fs::path& file) {
        SCOPED_TRACE(file.string());
        EXPECT_TRUE(save(file));
        EXPECT_THAT(printed, testing::StartsWith("XML Document:\n"));
        EXPECT_THAT(printed, testing::EndsWith(std::string{"\n"}.append(failed)));
    }

    void expectSaves(const fs::path& file) {
        SCOPED_TRACE(file.string());
        EXPECT_TRUE(save(file));
        EXPECT_THAT(printed, testing::Not(testing::HasSubstr(failed)));
        EXPECT_EQ("XML Document:\n" + contentsOf(file) + "\n", printed);
    }
};

TEST_F(UnusualPlace, AFileNameMayHoldSpacesQuotesAndAnyLetters) {
    for (const char* name :
         {"my settings.xml", "K\xC3\xA4the's \"summer\" settings.xml", "\xE8\xA8\xAD\xE5\xAE\x9A.xml",
          "\xD0\x9E\xD0\xBB\xD1\x8C\xD0\xB3\xD0\xB0 100%20.xml", "\xF0\x9F\x8E\xB5.xml", "e\xCC\x81.xml",
          "no extension", "back\\slash;&|<>*?.xml", "-rf.xml", "line\nbreak.xml"}) {
        model.choose(complete);
        expectSaves(path(name));
        model.choose(before);
        expectLoaded(path(name));
    }
}

TEST_F(UnusualPlace, AFileNameMayBeRelative) {
    const fs::path startedIn = fs::current_path();
    fs::current_path(directory.path());
    model.choose(complete);
    expectSaves("settings.xml");
    expectLoaded("settings.xml");
    fs::current_path(startedIn);
    EXPECT_TRUE(fs::exists(path("settings.xml")));
}

TEST_F(UnusualPlace, SavingWhereNothingCanBeWrittenReplacesNothingIsPrintedAndReturnsTrue) {
    writeFile(path("file"), "old");
    fs::create_directory(path("directory"));
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
    expectSaveFails(path("directory"));
    expectSaveFails(path("pipe"));
    expectSaveFails(path("file") / "settings.xml");
    expectSaveFails(path("missing") / "settings.xml");
    expectSaveFails("/proc/settings.xml");
    expectSaveFails("");
    EXPECT_EQ(contentsOf(path("file")), "old");
    EXPECT_TRUE(fs::is_directory(path("directory")));
    EXPECT_TRUE(fs::is_fifo(path("pipe")));
}

TEST_F(UnusualPlace, AnOrdinaryUserChangesNothingInADirectoryOfOthers) {
    writeFile(path("settings.xml"), "old");
    fs::permissions(path("settings.xml"), fs::perms{0666});
    fs::permissions(directory.path(), fs::perms{0555});
    testing::internal::CaptureStdout();
    const int status = asOrdinaryUser(
        [&] { return model.writeXML(path("settings.xml")) && model.writeXML(path("new.xml")) ? 0 : 1; });
    const std::string output = testing::internal::GetCapturedStdout();
    fs::permissions(directory.path(), fs::perms{0755});

    EXPECT_EQ(status, 0);
    EXPECT_EQ(output.find(failed) != std::string::npos, true) << output;
    EXPECT_NE(output.find(failed), output.rfind(failed)) << output;
    EXPECT_EQ(contentsOf(path("settings.xml")), "old");
    EXPECT_FALSE(fs::exists(path("new.xml")));
}

TEST_F(UnusualPlace, ALinkStaysALinkAndItsTargetIsReplaced) {
    fs::create_directory(path("elsewhere"));
    writeFile(path("elsewhere") / "target.xml", "old");
    fs::create_symlink(path("elsewhere") / "target.xml", path("settings.xml"));
    expectSaves(path("settings.xml"));
    EXPECT_TRUE(fs::is_symlink(path("settings.xml")));
    EXPECT_NE(contentsOf(path("elsewhere") / "target.xml"), "old");
}

TEST_F(UnusualPlace, AReplacedFileKeepsItsPermissions) {
    for (const fs::perms kept : {fs::perms{0600}, fs::perms{0664}}) {
        writeFile(path("settings.xml"), "old");
        fs::permissions(path("settings.xml"), kept);
        expectSaves(path("settings.xml"));
        EXPECT_EQ(fs::status(path("settings.xml")).permissions(), kept);
    }
}

TEST_F(UnusualPlace, ANewFileHasThePermissionsOfAnyNewFile) {
    const mode_t maskBefore = ::umask(0027);
    expectSaves(path("settings.xml"));
    ::umask(maskBefore);
    EXPECT_EQ(fs::status(path("settings.xml")).permissions(), fs::perms{0640});
}

TEST_F(UnusualPlace, ALongerFileIsReplacedWhole) {
    writeFile(path("settings.xml"), std::string(100'000, 'x'));
    expectSaves(path("settings.xml"));
    EXPECT_LT(fs::file_size(path("settings.xml")), 1000U);
}

}  // namespace
}  // namespace velmorindal
