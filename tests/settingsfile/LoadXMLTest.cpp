#include <string>
#include <vector>

#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

using LoadXML = SettingsFileTest;

ChosenSettings completeWith(void (*change)(ChosenSettings& settings)) {
    ChosenSettings settings = complete;
    change(settings);
    return settings;
}

TEST_F(LoadXML, AFileWithAllNineAttributesLoads) {
    expectLoaded(dataFile("complete.xml"));
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\n");
}

TEST_F(LoadXML, TheAttributesMayStandInAnyOrder) {
    expectLoaded(dataFile("any-order.xml"));
}

TEST_F(LoadXML, TheDeclarationMayBeMissing) {
    expectLoaded(dataFile("without-declaration.xml"));
}

TEST_F(LoadXML, AnOutputModeInTheWrongCaseCountsAsMissing) {
    expectRefused(dataFile("output-mode-in-wrong-case.xml"), "Missing output mode");
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\nMissing output mode\n");
}

TEST_F(LoadXML, ANameThatIsNoneCountsAsMissing) {
    expectRefused(dataFile("output-path-unknown.xml"), "Missing output path");
    expectRefused(dataFile("key-unknown.xml"), "Missing long output key");
}

TEST_F(LoadXML, AMissingLongKeyIsSpelledRightInTheTextAndWrongOnTheConsole) {
    expectRefused(dataFile("without-LongOutputKey.xml"), "Missing long output key");
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\nMisisng long output key\n");
}

TEST_F(LoadXML, EverySettingMustBeThere) {
    expectRefused(dataFile("without-OutputPath.xml"), "Missing output path");
    expectRefused(dataFile("without-OutputMode.xml"), "Missing output mode");
    expectRefused(dataFile("without-LongOutputEnabled.xml"), "Missing long enabled");
    expectRefused(dataFile("without-ShortOutputEnabled.xml"), "Missing short enabled");
    expectRefused(dataFile("without-ShortOutputKey.xml"), "Missing short output key");
    expectRefused(dataFile("without-DirectOutputKey.xml"), "Missing direct output key");
    expectRefused(dataFile("without-Sensitivity.xml"), "Missing sensitivity");
    expectRefused(dataFile("without-Cutoff.xml"), "Missing cutoff");
    expectRefused(dataFile("no-attributes.xml"), "Missing output path");
    // Also the keys of the other mode.
    expectRefused(dataFile("direct-without-short-key.xml"), "Missing short output key");
}

TEST_F(LoadXML, ASensitivityThatIsNoNumberLoadsAsZero) {
    expectLoaded(dataFile("sensitivity-abc.xml"), completeWith([](ChosenSettings& s) { s.clarity = 0.0F; }));
}

TEST_F(LoadXML, YesIsTrueAndNoIsFalse) {
    expectLoaded(dataFile("long-enabled-yes.xml"),
                 completeWith([](ChosenSettings& s) { s.shortEnabled = false; }));
    expectLoaded(dataFile("long-enabled-no.xml"),
                 completeWith([](ChosenSettings& s) { s.longEnabled = false; }));
}

TEST_F(LoadXML, AnExtraAttributeIsPrintedAndHarmless) {
    expectLoaded(dataFile("extra-attribute.xml"));
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\nUrecognized key:  Foo\n");
}

TEST_F(LoadXML, AnAttributeInTheWrongCaseIsAnExtraOne) {
    expectRefused(dataFile("attribute-name-in-wrong-case.xml"), "Missing output path");
    EXPECT_EQ(printed,
              "Found element:  VibrationSwitch\nUrecognized key:  outputPath\nMissing output path\n");
}

TEST_F(LoadXML, ARootOfAnotherNameStoresNothing) {
    expectRefused(dataFile("other-root.xml"), "Missing output path");
    EXPECT_EQ(printed, "Missing output path\n");
}

TEST_F(LoadXML, ElementsOfOtherNamesAroundItAndInItAreHarmless) {
    expectLoaded(dataFile("other-elements-around.xml"));
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\n");
}

TEST_F(LoadXML, ALaterElementOverwritesWhatItNames) {
    expectLoaded(dataFile("second-element-overwrites.xml"), completeWith([](ChosenSettings& s) {
                     s.outputPath = OutputPath::BTKeyboard;
                     s.clarity = 0.25F;
                     s.cutoff = 0.75F;
                 }));
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\nFound element:  VibrationSwitch\n");
}

TEST_F(LoadXML, ALaterElementWithAnUnknownNameTakesTheSettingAway) {
    expectRefused(dataFile("second-element-empties.xml"), "Missing output path");
}

TEST_F(LoadXML, APrefixIsPartOfTheName) {
    expectRefused(dataFile("prefixed.xml"), "Missing output path");
}

TEST_F(LoadXML, ANamespaceDeclarationIsAnExtraAttribute) {
    expectLoaded(dataFile("namespaced.xml"));
    EXPECT_EQ(printed, "Found element:  VibrationSwitch\nUrecognized key:  xmlns\n");
}

TEST_F(LoadXML, OtherQuotesCommentsAndInstructionsAreHarmless) {
    expectLoaded(dataFile("single-quotes-and-comments.xml"));
}

TEST_F(LoadXML, ReferencesAreReplacedBeforeAValueIsLookedAt) {
    expectLoaded(dataFile("character-references.xml"));
    expectLoaded(dataFile("internal-entity.xml"));
}

TEST_F(LoadXML, EncodingsWithAMarkOrADeclarationAreUnderstood) {
    expectLoaded(dataFile("utf-8-with-byte-order-mark.xml"));
    expectLoaded(dataFile("utf-16-little-endian.xml"));
    expectLoaded(dataFile("utf-16-big-endian.xml"));
    expectLoaded(dataFile("latin-1.xml"));
}

TEST_F(LoadXML, EachSettingIsAnnouncedInOrderBeforeItChanges) {
    const auto step = [](ChosenSettings from, void (*change)(ChosenSettings & settings)) {
        change(from);
        return from;
    };
    std::vector<ChosenSettings> expected{before};
    expected.push_back(step(expected.back(), [](ChosenSettings& s) { s.outputPath = complete.outputPath; }));
    expected.push_back(step(expected.back(), [](ChosenSettings& s) { s.outputMode = complete.outputMode; }));
    expected.push_back(
        step(expected.back(), [](ChosenSettings& s) { s.longEnabled = complete.longEnabled; }));
    expected.push_back(
        step(expected.back(), [](ChosenSettings& s) { s.shortEnabled = complete.shortEnabled; }));
    expected.push_back(
        step(expected.back(), [](ChosenSettings& s) { s.outputKeys.longKey = complete.outputKeys.longKey; }));
    expected.push_back(step(expected.back(),
                            [](ChosenSettings& s) { s.outputKeys.shortKey = complete.outputKeys.shortKey; }));
    expected.push_back(step(
        expected.back(), [](ChosenSettings& s) { s.outputKeys.directKey = complete.outputKeys.directKey; }));
    expected.push_back(step(expected.back(), [](ChosenSettings& s) { s.clarity = complete.clarity; }));

    std::vector<ChosenSettings> seen;
    const auto subscription =
        model.objectWillChange.subscribe([&] { seen.push_back(model.chosenSettings()); });
    expectLoaded(dataFile("complete.xml"));

    EXPECT_THAT(seen, testing::ElementsAreArray(expected));
}

TEST_F(LoadXML, TheLastErrorIsClearedFirst) {
    model.lastError = "an older text";
    expectLoaded(dataFile("complete.xml"));
    model.lastError = "an older text";
    expectRefused(path("there is no such file.xml"), notLoadable);
}

}  // namespace
}  // namespace velmorindal
