#include "VelmorindalXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace velmorindal {
namespace {

VelmorindalXML completeXML() {
    VelmorindalXML xml;
    xml.outputPath = OutputPath::Switch;
    xml.outputMode = OutputMode::Direct;
    xml.longEnabled = false;
    xml.shortEnabled = false;
    xml.longOutputKey = OutputKey::Space;
    xml.shortOutputKey = OutputKey::Space;
    xml.directOutputKey = OutputKey::Space;
    xml.sensitivity = 0.0F;
    xml.cutoff = 0.0F;
    return xml;
}

std::string printedBy(const std::function<void()>& work) {
    testing::internal::CaptureStdout();
    work();
    return testing::internal::GetCapturedStdout();
}

void start(VelmorindalXML& xml, const std::vector<XMLAttribute>& attributes) {
    printedBy([&] { xml.parser("VibrationSwitch", attributes); });
}

TEST(VelmorindalXML, StartsEmpty) {
    const VelmorindalXML xml;
    EXPECT_FALSE(xml.outputPath || xml.outputMode || xml.longEnabled || xml.shortEnabled ||
                 xml.longOutputKey || xml.shortOutputKey || xml.directOutputKey || xml.sensitivity ||
                 xml.cutoff || xml._lastError);
}

TEST(VelmorindalXML, TakesEachSettingFromItsAttribute) {
    VelmorindalXML xml;
    start(xml, {{"OutputPath", "BTKeyboard"},
                {"OutputMode", "LongShort"},
                {"LongOutputEnabled", "true"},
                {"ShortOutputEnabled", "false"},
                {"LongOutputKey", "[Up Arrow]"},
                {"ShortOutputKey", "~4"},
                {"DirectOutputKey", "0"},
                {"Sensitivity", "0.25"},
                {"Cutoff", "1.75"}});
    EXPECT_EQ(xml.outputPath, OutputPath::BTKeyboard);
    EXPECT_EQ(xml.outputMode, OutputMode::LongShort);
    EXPECT_EQ(xml.longEnabled, true);
    EXPECT_EQ(xml.shortEnabled, false);
    EXPECT_EQ(xml.longOutputKey, OutputKey::UpArrow);
    EXPECT_EQ(xml.shortOutputKey, OutputKey::Tilde4);
    EXPECT_EQ(xml.directOutputKey, OutputKey::Num0);
    EXPECT_EQ(xml.sensitivity, 0.25F);
    EXPECT_EQ(xml.cutoff, 1.75F);
}

TEST(VelmorindalXML, TakesEveryNameThatExists) {
    VelmorindalXML xml;
    for (const OutputPath path : allOutputPaths) {
        start(xml, {{"OutputPath", std::string{caseName(path)}}});
        EXPECT_EQ(xml.outputPath, path);
    }
    for (const OutputMode mode : allOutputModes) {
        start(xml, {{"OutputMode", std::string{caseName(mode)}}});
        EXPECT_EQ(xml.outputMode, mode);
    }
}

TEST(VelmorindalXML, StoresNothingForANameThatIsNotExact) {
    for (const char* text : {"", "usbkeyboard", " USBKeyboard", "USBKeyboard ", "USB", "0", "Direct"}) {
        VelmorindalXML xml = completeXML();
        start(xml, {{"OutputPath", text}, {"OutputMode", std::string{text} + "!"}, {"LongOutputKey", text}});
        EXPECT_EQ(xml.outputPath, std::nullopt) << text;
        EXPECT_EQ(xml.outputMode, std::nullopt) << text;
        EXPECT_EQ(xml.longOutputKey.has_value(), std::string_view{text} == "0") << text;
    }
}

TEST(VelmorindalXML, KnowsKeysByTheirDisplayTextOnly) {
    for (const char* text : {"", "ShiftTab", "shift+tab", "Num0", "Tilde1", "Up Arrow", "f1", "F13"}) {
        VelmorindalXML xml = completeXML();
        start(xml, {{"LongOutputKey", text}, {"ShortOutputKey", text}, {"DirectOutputKey", text}});
        EXPECT_EQ(xml.longOutputKey, std::nullopt) << text;
        EXPECT_EQ(xml.shortOutputKey, std::nullopt) << text;
        EXPECT_EQ(xml.directOutputKey, std::nullopt) << text;
    }
}

TEST(VelmorindalXML, StoresFalseAndZeroForTextsThatMeanNothing) {
    VelmorindalXML xml;
    start(
        xml,
        {{"LongOutputEnabled", "maybe"}, {"ShortOutputEnabled", ""}, {"Sensitivity", "abc"}, {"Cutoff", ""}});
    EXPECT_EQ(xml.longEnabled, false);
    EXPECT_EQ(xml.shortEnabled, false);
    EXPECT_EQ(xml.sensitivity, 0.0F);
    EXPECT_EQ(xml.cutoff, 0.0F);
}

TEST(VelmorindalXML, PrintsTheElementAndEachAttributeThatIsNoSetting) {
    VelmorindalXML xml;
    const std::vector<XMLAttribute> attributes{{"Foo", "bar"}, {"Cutoff", "1.5"}, {"cutoff", "2"}};
    EXPECT_EQ(printedBy([&] { xml.parser("VibrationSwitch", attributes); }),
              "Found element:  VibrationSwitch\nUrecognized key:  Foo\nUrecognized key:  cutoff\n");
    EXPECT_EQ(xml.cutoff, 1.5F);
}

TEST(VelmorindalXML, IgnoresEveryOtherElementAndPrintsNothing) {
    VelmorindalXML xml;
    const std::vector<XMLAttribute> attributes{{"OutputPath", "Switch"}, {"Foo", "bar"}};
    for (const char* name : {"", "vibrationSwitch", "VibrationSwitches", "v:VibrationSwitch", "Switch"}) {
        EXPECT_EQ(printedBy([&] { xml.parser(name, attributes); }), "") << name;
        EXPECT_EQ(xml.outputPath, std::nullopt) << name;
    }
}

TEST(VelmorindalXML, LetsALaterAttributeOrElementOverwriteWhatAnEarlierOneSet) {
    VelmorindalXML xml;
    start(xml, {{"OutputPath", "Switch"}, {"Cutoff", "1"}, {"Cutoff", "2"}});
    EXPECT_EQ(xml.cutoff, 2.0F);
    start(xml, {{"Cutoff", "3"}});
    EXPECT_EQ(xml.outputPath, OutputPath::Switch);
    EXPECT_EQ(xml.cutoff, 3.0F);
    start(xml, {{"OutputPath", "Serial"}});
    EXPECT_EQ(xml.outputPath, std::nullopt);
}

TEST(VelmorindalXML, IsValidWithEverySettingAndSaysNothing) {
    VelmorindalXML xml = completeXML();
    EXPECT_EQ(printedBy([&] { EXPECT_TRUE(xml.valid()); }), "");
    EXPECT_EQ(xml._lastError, std::nullopt);
}

struct Missing {
    void (*forget)(VelmorindalXML& xml);
    const char* text;
    const char* printed;
};

const std::vector<Missing>& missingSettings() {
    static const std::vector<Missing> settings{
        {[](VelmorindalXML& xml) { xml.outputPath.reset(); }, "Missing output path", "Missing output path\n"},
        {[](VelmorindalXML& xml) { xml.outputMode.reset(); }, "Missing output mode", "Missing output mode\n"},
        {[](VelmorindalXML& xml) { xml.longEnabled.reset(); }, "Missing long enabled",
         "Missing long enabled\n"},
        {[](VelmorindalXML& xml) { xml.shortEnabled.reset(); }, "Missing short enabled",
         "Missing short enabled\n"},
        {[](VelmorindalXML& xml) { xml.longOutputKey.reset(); }, "Missing long output key",
         "Misisng long output key\n"},
        {[](VelmorindalXML& xml) { xml.shortOutputKey.reset(); }, "Missing short output key",
         "Missing short output key\n"},
        {[](VelmorindalXML& xml) { xml.directOutputKey.reset(); }, "Missing direct output key",
         "Missing direct output key\n"},
        {[](VelmorindalXML& xml) { xml.sensitivity.reset(); }, "Missing sensitivity",
         "Missing sensitivity\n"},
        {[](VelmorindalXML& xml) { xml.cutoff.reset(); }, "Missing cutoff", "Missing cutoff\n"},
    };
    return settings;
}

TEST(VelmorindalXML, SaysWhichSettingIsMissing) {
    for (const auto& [forget, text, expected] : missingSettings()) {
        VelmorindalXML xml = completeXML();
        forget(xml);
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(xml.valid()); }), expected);
        EXPECT_EQ(xml._lastError, text);
    }
}

TEST(VelmorindalXML, SaysOnlyTheFirstOfSeveralMissingSettings) {
    const auto& missing = missingSettings();
    for (std::size_t first = 0; first < missing.size(); ++first) {
        VelmorindalXML xml = completeXML();
        for (std::size_t index = first; index < missing.size(); ++index) {
            missing[index].forget(xml);
        }
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(xml.valid()); }), missing[first].printed);
        EXPECT_EQ(xml._lastError, missing[first].text);
    }
}

}  // namespace
}  // namespace velmorindal
