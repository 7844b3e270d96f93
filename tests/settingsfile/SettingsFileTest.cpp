#include "SettingsFileTest.h"

#include <fstream>
#include <iterator>
#include <ostream>

#include "Print.h"

namespace velmorindal {

void NoDispatch::postToMain(Work /*work*/) {
    ADD_FAILURE() << "posted to the main queue";
}

void NoDispatch::runOnMainAndWait(Work /*work*/) {
    ADD_FAILURE() << "waited for the main queue";
}

void NoDispatch::runInBackground(Work /*work*/) {
    ADD_FAILURE() << "ran in the background";
}

void NoDispatch::runPendingMainWork() {
    ADD_FAILURE() << "ran pending main work";
}

void PrintTo(const Settings& settings, std::ostream* stream) {
    for (const PrintItem& item :
         {PrintItem{settings.outputPath}, PrintItem{settings.outputMode}, PrintItem{settings.longEnabled},
          PrintItem{settings.shortEnabled}, PrintItem{settings.keys.longKey},
          PrintItem{settings.keys.shortKey}, PrintItem{settings.keys.directKey}, PrintItem{settings.clarity},
          PrintItem{settings.cutoff}}) {
        *stream << item.text() << ' ';
    }
}

Settings settingsOf(const VelmorindalSwitch& model) {
    return {.outputPath = model.outputPath.get(),
            .outputMode = model.outputMode.get(),
            .longEnabled = model.longEnabled.get(),
            .shortEnabled = model.shortEnabled.get(),
            .keys = model.outputKeys.get(),
            .clarity = model.clarity.get(),
            .cutoff = model.cutoff.get()};
}

void choose(VelmorindalSwitch& model, const Settings& settings) {
    model.outputPath = settings.outputPath;
    model.outputMode = settings.outputMode;
    model.longEnabled = settings.longEnabled;
    model.shortEnabled = settings.shortEnabled;
    model.outputKeys = settings.keys;
    model.clarity = settings.clarity;
    model.cutoff = settings.cutoff;
}

std::string completeDocument(std::string_view replaced, std::string_view replacement) {
    std::string document =
        R"(<VibrationSwitch OutputPath="USBKeyboard" OutputMode="LongShort" LongOutputEnabled="true" )"
        R"(ShortOutputEnabled="true" LongOutputKey="Shift+Tab" ShortOutputKey="Space" DirectOutputKey="Tab" )"
        R"(Sensitivity="0.50" Cutoff="1.50"/>)";
    return document.replace(document.find(replaced), replaced.size(), replacement);
}

std::string dataFile(std::string_view name) {
    return std::string{VELMORINDAL_TEST_SOURCE_DIRECTORY "/data/"}.append(name);
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

void writeFile(const std::filesystem::path& file, std::string_view contents) {
    std::ofstream stream{file, std::ios::binary};
    stream << contents << std::flush;
    ASSERT_TRUE(stream) << file;
}

std::ptrdiff_t entriesOf(const std::filesystem::path& directory) {
    return std::distance(std::filesystem::directory_iterator{directory}, {});
}

SettingsFileTest::SettingsFileTest() {
    std::filesystem::permissions(directory.path(), std::filesystem::perms{0755});
    choose(model, before);
    subscription_ = model.objectWillChange.subscribe([this] { ++announcements; });
}

bool SettingsFileTest::load(const std::filesystem::path& file) {
    announcements = 0;
    testing::internal::CaptureStdout();
    const bool loaded = model.loadXML(file.string());
    printed = testing::internal::GetCapturedStdout();
    return loaded;
}

bool SettingsFileTest::save(const std::filesystem::path& file) {
    testing::internal::CaptureStdout();
    const bool saved = model.writeXML(file.string());
    printed = testing::internal::GetCapturedStdout();
    return saved;
}

void SettingsFileTest::expectRefused(const std::filesystem::path& file, std::string_view text) {
    SCOPED_TRACE(file.string());
    const Settings unchanged = settingsOf(model);
    EXPECT_FALSE(load(file));
    EXPECT_EQ(model.lastError.get(), text);
    EXPECT_EQ(settingsOf(model), unchanged);
    EXPECT_EQ(announcements, 0);
}

void SettingsFileTest::expectLoaded(const std::filesystem::path& file, const Settings& settings) {
    SCOPED_TRACE(file.string());
    EXPECT_TRUE(load(file));
    EXPECT_EQ(model.lastError.get(), std::nullopt);
    EXPECT_EQ(settingsOf(model), settings);
    EXPECT_EQ(announcements, 9);
}

}  // namespace velmorindal
