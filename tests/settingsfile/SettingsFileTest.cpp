#include "SettingsFileTest.h"

#include <fstream>
#include <iterator>
#include <ostream>
#include <tuple>

#include "Print.h"

namespace velmorindal {

bool operator==(const ChosenSettings& one, const ChosenSettings& other) {
    const auto all = [](const ChosenSettings& each) {
        return std::tie(each.outputPath, each.outputMode, each.longEnabled, each.shortEnabled,
                        each.outputKeys, each.clarity, each.cutoff);
    };
    return all(one) == all(other);
}

void PrintTo(const ChosenSettings& settings, std::ostream* stream) {
    for (const PrintItem& item :
         {PrintItem{settings.outputPath}, PrintItem{settings.outputMode}, PrintItem{settings.longEnabled},
          PrintItem{settings.shortEnabled}, PrintItem{settings.outputKeys.longKey},
          PrintItem{settings.outputKeys.shortKey}, PrintItem{settings.outputKeys.directKey},
          PrintItem{settings.clarity}, PrintItem{settings.cutoff}}) {
        *stream << item.text() << ' ';
    }
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
    model.choose(before);
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
    const ChosenSettings unchanged = model.chosenSettings();
    EXPECT_FALSE(load(file));
    EXPECT_EQ(model.lastError.get(), text);
    EXPECT_EQ(model.chosenSettings(), unchanged);
    EXPECT_EQ(announcements, 0);
}

void SettingsFileTest::expectLoaded(const std::filesystem::path& file, const ChosenSettings& settings) {
    SCOPED_TRACE(file.string());
    EXPECT_TRUE(load(file));
    EXPECT_EQ(model.lastError.get(), std::nullopt);
    EXPECT_EQ(model.chosenSettings(), settings);
    EXPECT_EQ(announcements, 9);
}

}  // namespace velmorindal
