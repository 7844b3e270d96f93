#include "VelmorindalXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace velmorindal {
namespace {

std::string printedBy(const std::function<void()>& work) {
    testing::internal::CaptureStdout();
    work();
    return testing::internal::GetCapturedStdout();
}

void start(VelmorindalXML& xml, const std::vector<XMLAttribute>& attributes) {
    printedBy([&] { xml.parser("VibrationSwitch", attributes); });
}

TEST(VelmorindalXML, StoresNothingForANameThatIsNotExact) {
    for (const char* text : {"", "usbkeyboard", " USBKeyboard", "USBKeyboard ", "USB", "0", "Direct"}) {
        VelmorindalXML xml;
        start(xml, {{"OutputPath", "Switch"}, {"OutputMode", "Direct"}, {"LongOutputKey", "Space"}});
        start(xml, {{"OutputPath", text}, {"OutputMode", std::string{text} + "!"}, {"LongOutputKey", text}});
        EXPECT_EQ(xml.outputPath, std::nullopt) << text;
        EXPECT_EQ(xml.outputMode, std::nullopt) << text;
        EXPECT_EQ(xml.longOutputKey.has_value(), std::string_view{text} == "0") << text;
    }
}

TEST(VelmorindalXML, KnowsKeysByTheirDisplayTextOnly) {
    for (const char* text : {"", "ShiftTab", "shift+tab", "Num0", "Tilde1", "Up Arrow", "f1", "F13"}) {
        VelmorindalXML xml;
        start(xml, {{"LongOutputKey", "Tab"}, {"ShortOutputKey", "Tab"}, {"DirectOutputKey", "Tab"}});
        start(xml, {{"LongOutputKey", text}, {"ShortOutputKey", text}, {"DirectOutputKey", text}});
        EXPECT_EQ(xml.longOutputKey, std::nullopt) << text;
        EXPECT_EQ(xml.shortOutputKey, std::nullopt) << text;
        EXPECT_EQ(xml.directOutputKey, std::nullopt) << text;
    }
}

TEST(VelmorindalXML, SaysOnlyTheFirstOfSeveralMissingSettings) {
    VelmorindalXML xml;
    const auto expectMissing = [&xml](const std::string& text, std::string_view line = {}) {
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(xml.valid()); }),
                  std::string{line.empty() ? text : line} + "\n");
        EXPECT_EQ(xml._lastError, text);
    };
    expectMissing("Missing output path");
    xml.outputPath = OutputPath::Switch;
    expectMissing("Missing output mode");
    xml.outputMode = OutputMode::Direct;
    expectMissing("Missing long enabled");
    xml.longEnabled = false;
    expectMissing("Missing short enabled");
    xml.shortEnabled = false;
    expectMissing("Missing long output key", "Misisng long output key");
    xml.longOutputKey = OutputKey::Space;
    expectMissing("Missing short output key");
    xml.shortOutputKey = OutputKey::Space;
    expectMissing("Missing direct output key");
    xml.directOutputKey = OutputKey::Space;
    expectMissing("Missing sensitivity");
    xml.sensitivity = 0.0F;
    expectMissing("Missing cutoff");
    xml.cutoff = 0.0F;
    EXPECT_TRUE(xml.valid());
}

}  // namespace
}  // namespace velmorindal
