#include "VCVersion.h"

#include <csignal>

#include "ProtocolTest.h"

namespace velmorindal {
namespace {

TEST(VCVersion, StartsValidAndEmpty) {
    const VCVersion version;
    EXPECT_TRUE(version._valid);
    EXPECT_EQ(version._versionString, "");
}

TEST(VCVersion, TakesTheWholePayloadAsText) {
    VCVersion version;
    EXPECT_TRUE(
        version.deserialize(ByteBuffer{'r', 'b', 'v', 0x08, 'V', 'e', 'l', ' ', '1', '.', '2', '\n'}));
    EXPECT_TRUE(version._valid);
    EXPECT_EQ(version._versionString, "Vel 1.2\n");
}

TEST(VCVersion, DecodesAnEmptyPayloadToAnEmptyText) {
    VCVersion version;
    version._versionString = "before";
    EXPECT_TRUE(version.deserialize(ByteBuffer{'r', 'b', 'v', 0x00}));
    EXPECT_TRUE(version._valid);
    EXPECT_EQ(version._versionString, "");
}

TEST(VCVersion, KeepsEveryCharacterOfAText) {
    VCVersion version;
    EXPECT_TRUE(
        version.deserialize(ByteBuffer{'r', 'b', 'v', 0x07, 'a', 0x00, 0xC3, 0xBC, 0xE2, 0x82, 0xAC}));
    EXPECT_EQ(version._versionString, (std::string{'a', '\0', '\xC3', '\xBC', '\xE2', '\x82', '\xAC'}));
}

TEST(VCVersion, TakesATextOf255Bytes) {
    VCVersion version;
    EXPECT_TRUE(version.deserialize(VCVersion::addHeader(ByteBuffer(255, 'v'), 'v', false)));
    EXPECT_EQ(version._versionString, std::string(255, 'v'));
}

TEST(VCVersion, KeepsItsTextWhenAFrameFails) {
    VCVersion version;
    version._versionString = "before";
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(version.deserialize(ByteBuffer{'r', 'b', 'v', 0x02, 'a'}));
              }),
              "Expected total payload length of  2  but got  1\n");
    EXPECT_FALSE(version._valid);
    EXPECT_EQ(version._versionString, "before");
}

TEST(VCVersionDeathTest, StopsTheProcessForATextThatIsNotUtf8) {
    VCVersion version;
    EXPECT_EXIT(version.deserialize(ByteBuffer{'r', 'b', 'v', 0x01, 0xFF}), testing::KilledBySignal(SIGABRT),
                "^The version text of the device is not UTF-8\\.\n$");
}

TEST(VCVersion, CannotBeSent) {
    VCVersion version;
    EXPECT_EQ(errorOf([&] { version.serialize(); }), VelmorindalError::NotImplementedError);
    version._valid = false;
    EXPECT_EQ(errorOf([&] { version.serialize(); }), VelmorindalError::InvalidMessageError);
}

}  // namespace
}  // namespace velmorindal
