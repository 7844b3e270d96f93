#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "ForkedChild.h"
#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

using HostileFile = SettingsFileTest;

TEST_F(HostileFile, AFileThatIsNotWellFormedOrGrowsWithoutBoundIsRefused) {
    for (const char* name :
         {"empty.xml", "blank.xml", "not-xml.xml", "truncated.xml", "truncated-after-element.xml",
          "unclosed-element.xml", "repeated-attribute.xml", "unquoted-value.xml", "undeclared-entity.xml",
          "invalid-utf-8.xml", "unknown-encoding.xml", "nul-byte-in-value.xml", "entity-bomb-in-value.xml",
          "entity-bomb-in-text.xml", "entity-in-circle.xml"}) {
        expectRefused(dataFile(name), notParsable);
    }
}

TEST_F(HostileFile, WhateverFollowsTheRootMakesTheWholeFileWrong) {
    for (const char* name : {"text-after-root.xml", "second-root.xml", "nul-byte-after-root.xml"}) {
        expectRefused(dataFile(name), notParsable);
        EXPECT_THAT(printed, testing::StartsWith("Found element:  VibrationSwitch\n")) << name;
    }
}

TEST_F(HostileFile, AFileCutOffAnywhereIsRefused) {
    const std::string document = contentsOf(dataFile("single-quotes-and-comments.xml"));
    const std::size_t end =
        document.find("</VibrationSwitch>") + std::string_view{"</VibrationSwitch>"}.size();
    for (std::size_t length = 0; length < end; ++length) {
        writeFile(path("cut.xml"), document.substr(0, length));
        expectRefused(path("cut.xml"), notParsable);
    }
}

/// Reports whether any process opens or reads a file.
class Watch {
  public:
    explicit Watch(const std::string& file) {
        EXPECT_GE(::inotify_add_watch(descriptor_, file.c_str(), IN_OPEN | IN_ACCESS), 0) << file;
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { ::close(descriptor_); }

    bool sawSomething() const {
        std::array<char, 4096> events{};
        return ::read(descriptor_, events.data(), events.size()) > 0;
    }

  private:
    int descriptor_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};

TEST_F(HostileFile, NoFileThatADocumentPointsToIsTouched) {
    Watch watch{dataFile("external-path.txt")};
    ASSERT_EQ(contentsOf(dataFile("external-path.txt")), "USBKeyboard");
    ASSERT_TRUE(watch.sawSomething());

    const std::filesystem::path startedIn = std::filesystem::current_path();
    std::filesystem::current_path(dataFile(""));
    expectLoaded("external-doctype.xml");
    expectRefused("external-entity-in-value.xml", notParsable);
    std::filesystem::current_path(startedIn);

    EXPECT_FALSE(watch.sawSomething());
}

TEST_F(HostileFile, APipeThatADocumentPointsToIsNotWaitedFor) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    writeFile(path("pointing.xml"), "<!DOCTYPE VibrationSwitch SYSTEM \"" + pipe +
                                        "\" [<!ENTITY e SYSTEM \"file://" + pipe + "\">]><a>&e;" +
                                        completeDocument() + "</a>");
    expectLoaded(path("pointing.xml"));
}

TEST_F(HostileFile, AFileThatIsMissingOrADirectoryOrFailsWhileItIsReadCannotBeLoaded) {
    expectRefused(directory.path(), notLoadable);
    expectRefused(path("missing.xml"), notLoadable);
    expectRefused(path("missing") / "settings.xml", notLoadable);
    expectRefused("", notLoadable);
    // A regular file that opens, and whose first page cannot be read.
    expectRefused("/proc/self/mem", notLoadable);
    EXPECT_EQ(printed, "");
}

TEST_F(HostileFile, APipeOrADeviceIsRefusedWithoutWaiting) {
    ASSERT_EQ(::mkfifo(path("pipe.xml").c_str(), 0666), 0);
    expectRefused(path("pipe.xml"), notLoadable);
    std::filesystem::create_symlink(path("pipe.xml"), path("link.xml"));
    expectRefused(path("link.xml"), notLoadable);
    expectRefused("/dev/zero", notLoadable);
    expectRefused("/dev/tty", notLoadable);
}

TEST_F(HostileFile, AFileWithoutReadPermissionCannotBeLoaded) {
    writeFile(path("secret.xml"), completeDocument());
    std::filesystem::permissions(path("secret.xml"), std::filesystem::perms::none);
    EXPECT_EQ(asOrdinaryUser([&] {
                  const bool loaded = model.loadXML(path("secret.xml"));
                  return !loaded && model.lastError.get() == notLoadable && model.chosenSettings() == before
                             ? 0
                             : 1;
              }),
              0);
    std::filesystem::permissions(path("secret.xml"), std::filesystem::perms{0644});
    EXPECT_EQ(asOrdinaryUser([&] { return model.loadXML(path("secret.xml")) ? 0 : 1; }), 0);
}

}  // namespace
}  // namespace velmorindal
