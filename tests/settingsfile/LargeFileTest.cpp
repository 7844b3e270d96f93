#include <algorithm>
#include <fstream>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "ForkedChild.h"
#include "SettingsFileTest.h"

namespace velmorindal {

#ifdef VELMORINDAL_ADDRESS_SANITIZER
/// The sanitizer keeps what is freed for a while: little of it here, or its store would be all that is
/// measured.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the runtime's name for it.
extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=1:thread_local_quarantine_size_kb=64";
}
#endif

namespace {

constexpr std::size_t mebibyte = 1024UL * 1024;
constexpr int mostGrowth = 16;
constexpr int wrongOutcome = 255;

/// The most memory that this process has ever held, in MiB.
int peakMemory() {
    std::ifstream status{"/proc/self/status"};
    std::string word;
    while (status >> word && word != "VmHWM:") {
    }
    int kibibytes = 0;
    status >> kibibytes;
    return kibibytes / 1024;
}

void repeat(std::ostream& stream, std::string_view piece, std::size_t total) {
    std::string block;
    for (std::size_t count = 0; count < mebibyte / piece.size(); ++count) {
        block += piece;
    }
    for (std::size_t written = 0; written < total; written += block.size()) {
        stream << block;
    }
}

/// Plain letters in UTF-16.
std::string utf16(std::string_view text, bool littleEndian) {
    std::string bytes;
    for (const char letter : text) {
        bytes += littleEndian ? letter : '\0';
        bytes += littleEndian ? '\0' : letter;
    }
    return bytes;
}

class LargeFile : public SettingsFileTest {
  protected:
    /// Loads, in a separate process, `before`, then `piece` over and over for `size` bytes, then `after`.
    /// Expects `error` or, without one, that it loads, and in either case that memory hardly grows.
    void expect(std::optional<std::string_view> error, std::string_view before, std::string_view piece,
                std::size_t size, std::string_view after) {
        {
            std::ofstream stream{path("large.xml"), std::ios::binary};
            stream << before;
            repeat(stream, piece, size);
            stream << after << std::flush;
            ASSERT_TRUE(stream);
        }
        const int growth = inChild([&] {
            // The first load brings in what any load needs.
            model.loadXML(dataFile("complete.xml"));
            model.choose(velmorindal::before);
            const int peakBefore = peakMemory();
            const bool loaded = model.loadXML(path("large.xml"));
            const int peakAfter = peakMemory();
            const ChosenSettings& expected = error ? velmorindal::before : complete;
            return loaded != error.has_value() && model.lastError.get() == error &&
                           model.chosenSettings() == expected
                       ? std::min(peakAfter - peakBefore, wrongOutcome - 1)
                       : wrongOutcome;
        });
        EXPECT_GE(growth, 0) << "killed";
        EXPECT_NE(growth, wrongOutcome) << "not loaded, or not refused, as expected";
        EXPECT_LE(growth, mostGrowth) << "MiB";
    }
};

TEST_F(LargeFile, ManyMegabytesOfWhiteSpaceAreHarmlessWherever) {
    const std::string document = completeDocument();
    expect(std::nullopt, document, " \n\t\r", 100 * mebibyte, "\n");
    expect(std::nullopt, "", "\n", 40 * mebibyte, document);
    expect(std::nullopt, "<a>" + document, " ", 40 * mebibyte, "</a>");
    // Inside the tag, and before a number.
    for (const std::size_t gap : {document.find(" OutputMode"), document.find("1.50")}) {
        expect(std::nullopt, document.substr(0, gap), " ", 40 * mebibyte, document.substr(gap));
    }
}

TEST_F(LargeFile, WhatIsWrongIsSeenBesideManyMegabytesOfWhiteSpace) {
    expect(notParsable, "", " \n\t\r", 100 * mebibyte, "");
    expect(notParsable, completeDocument(), " ", 40 * mebibyte, "the end");
}

TEST_F(LargeFile, WhiteSpaceOfTwoBytesEachIsRefusedWhenItFillsMegabytes) {
    using namespace std::string_view_literals;
    const std::string document = "\xFF\xFE" + utf16(completeDocument(), true);
    expect(notParsable, document, " \0"sv, 40 * mebibyte, "");
    writeFile(path("short.xml"), document);
    expectLoaded(path("short.xml"));
}

TEST_F(LargeFile, AnEndlessTextCommentOrNameIsRefused) {
    const std::string document = completeDocument();
    expect(notParsable, "<a>" + document, "la ", 40 * mebibyte, "</a>");
    expect(notParsable, "<a>" + document + "<![CDATA[", "la ", 40 * mebibyte, "]]></a>");
    expect(notParsable, "<!--", "la ", 40 * mebibyte, "-->" + document);
    expect(notParsable, document + "<!--", "la ", 40 * mebibyte, "-->");
    expect(notParsable, document + "<?", "la ", 40 * mebibyte, "?>");
    expect(notParsable, "<", "la", 40 * mebibyte, "/>");
}

TEST_F(LargeFile, AnEndlessValueOrEntityIsRefused) {
    expect(notParsable, "<a b=\"", "la ", 40 * mebibyte, "\"/>");
    expect(notParsable, "<!DOCTYPE a [<!ENTITY b \"", "la ", 40 * mebibyte, "\">]><a/>");
    expect(notParsable, "<!DOCTYPE a [", "<!ENTITY b \"la\">", 40 * mebibyte, "]><a/>");
    expect(notParsable, "<!DOCTYPE a [<!ENTITY b \"" + std::string(120, 'l') + "\">]><a b=\"", "&b;",
           40 * mebibyte, "\"/>");
    expect(notParsable, "<!DOCTYPE a [<!ENTITY b \"" + std::string(120, 'l') + "\">]><a>", "&b;",
           40 * mebibyte, "</a>");
}

TEST_F(LargeFile, ReferencesToALongEntityAreRefusedBeforeTheyAddUp) {
    expect(notParsable, "<!DOCTYPE a [<!ENTITY b \"" + std::string(4000, 'l') + "\">]><a b=\"", "&b;",
           40 * mebibyte, "\"/>");
}

TEST_F(LargeFile, EveryTokenIsLimitedAloneSoThatAnyNumberOfThemIsHarmless) {
    const std::string document = completeDocument();
    const std::string words(100, 'x');
    expect(std::nullopt, "<a>" + document, "<b c=\"" + words + "\">" + words + "</b>", 40 * mebibyte, "</a>");
    expect(std::nullopt, document, "<!--" + words + "-->\n", 40 * mebibyte, "");
}

TEST_F(LargeFile, AMillionElementsInsideEachOtherAreRefused) {
    expect(notParsable, completeDocument("/>", ">"), "<a>", 3'000'000, "");
}

TEST_F(LargeFile, ElementsMayBeNestedTwoHundredAndFiftySixDeepAndNoDeeper) {
    const auto nested = [](int depth) {
        std::string document = completeDocument();
        for (int level = 1; level < depth; ++level) {
            document = "<a>" + document + "</a>";
        }
        return document;
    };
    writeFile(path("deep.xml"), nested(257));
    expectRefused(path("deep.xml"), notParsable);
    writeFile(path("deep.xml"), nested(256));
    expectLoaded(path("deep.xml"));
}

TEST_F(LargeFile, ATextOfFiftyKilobytesIsHarmless) {
    const std::string text(50UL * 1024, 'x');
    writeFile(path("wordy.xml"),
              "<!--" + text + "-->" + completeDocument("/>", ">" + text + "</VibrationSwitch>"));
    expectLoaded(path("wordy.xml"));
}

TEST_F(LargeFile, LettersWhoseHalvesLookLikeSpacesAreLetters) {
    // A comment of daggers (U+2020), too long as a comment of any other letters would be.
    writeFile(path("daggers.xml"), "\xFE\xFF" + utf16("<!--", false) + std::string(200UL * 1024, ' ') +
                                       utf16("-->", false) + utf16(completeDocument(), false));
    expectRefused(path("daggers.xml"), notParsable);
}

}  // namespace
}  // namespace velmorindal
