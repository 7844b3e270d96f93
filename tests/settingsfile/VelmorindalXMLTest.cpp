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

struct Missing {
    void (*forget)(VelmorindalXML& xml);
    std::string text;
};

const std::vector<Missing> missing{
    {[](VelmorindalXML& xml) { xml.outputPath.reset(); }, "Missing output path"},
    {[](VelmorindalXML& xml) { xml.outputMode.reset(); }, "Missing output mode"},
    {[](VelmorindalXML& xml) { xml.longEnabled.reset(); }, "Missing long enabled"},
    {[](VelmorindalXML& xml) { xml.shortEnabled.reset(); }, "Missing short enabled"},
    {[](VelmorindalXML& xml) { xml.longOutputKey.reset(); }, "Missing long output key"},
    {[](VelmorindalXML& xml) { xml.shortOutputKey.reset(); }, "Missing short output key"},
    {[](VelmorindalXML& xml) { xml.directOutputKey.reset(); }, "Missing direct output key"},
    {[](VelmorindalXML& xml) { xml.sensitivity.reset(); }, "Missing sensitivity"},
    {[](VelmorindalXML& xml) { xml.cutoff.reset(); }, "Missing cutoff"},
};

TEST(VelmorindalXML, SaysOnlyTheFirstOfSeveralMissingSettings) {
    for (std::size_t first = 0; first < missing.size(); ++first) {
        VelmorindalXML xml = completeXML();
        for (std::size_t index = first; index < missing.size(); ++index) {
            missing[index].forget(xml);
        }
        const std::string& text = missing[first].text;
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(xml.valid()); }),
                  (text == "Missing long output key" ? "Misisng long output key" : text) + "\n");
        EXPECT_EQ(xml._lastError, text);
    }
}

}  // namespace
}  // namespace velmorindal
