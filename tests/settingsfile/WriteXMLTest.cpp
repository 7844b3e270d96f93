#include <limits>
#include <string>

#include "OtherToolkitLocales.h"
#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

using WriteXML = SettingsFileTest;

std::string attribute(const std::string& document, std::string_view name) {
    const std::string start = std::string{" "}.append(name).append("=\"");
    const std::size_t value = document.find(start) + start.size();
    return document.substr(value, document.find('"', value) - value);
}

TEST_F(WriteXML, AFileIsOneEmptyElementWithNineAttributesInOrder) {
    model.choose(complete);
    EXPECT_TRUE(save(path("settings.xml")));
    EXPECT_EQ(contentsOf(path("settings.xml")), contentsOf(dataFile("saved.xml")));
}

TEST_F(WriteXML, NumbersHaveTwoDecimalsAndAPoint) {
    struct NumberCase {
        float number;
        std::string_view text;
    };
    for (const auto& [number, text] :
         {NumberCase{0.0F, "0.00"},
          {1.0F, "1.00"},
          {0.37F, "0.37"},
          {12.345F, "12.35"},
          {0.004F, "0.00"},
          {-0.004F, "-0.00"},
          {-1.5F, "-1.50"},
          {0.999F, "1.00"},
          // Halfway: to the even neighbour.
          {0.125F, "0.12"},
          {0.375F, "0.38"},
          {1234567.0F, "1234567.00"},
          {std::numeric_limits<float>::max(), "340282346638528859811704183484516925440.00"},
          {std::numeric_limits<float>::lowest(), "-340282346638528859811704183484516925440.00"},
          {std::numeric_limits<float>::infinity(), "inf"},
          {std::numeric_limits<float>::quiet_NaN(), "nan"}}) {
        model.clarity = number;
        model.cutoff = number;
        save(path("settings.xml"));
        const std::string document = contentsOf(path("settings.xml"));
        EXPECT_EQ(attribute(document, "Sensitivity"), text);
        EXPECT_EQ(attribute(document, "Cutoff"), text);
    }
}

TEST_F(WriteXML, TheLocaleChangesNothing) {
    model.cutoff = 1234.5F;
    inOtherToolkitLocales([this](const char* locale) {
        save(path("settings.xml"));
        EXPECT_EQ(attribute(contentsOf(path("settings.xml")), "Cutoff"), "1234.50") << locale;
    });
}

TEST_F(WriteXML, SavingAnnouncesNoChangeAndLeavesTheLastErrorAlone) {
    model.lastError = "an older text";
    announcements = 0;
    save(path("settings.xml"));
    save(path("missing") / "settings.xml");
    EXPECT_EQ(announcements, 0);
    EXPECT_EQ(model.lastError.get(), "an older text");
}

}  // namespace
}  // namespace velmorindal
