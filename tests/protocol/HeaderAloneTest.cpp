// The orders that have no payload and no answer of their own.

#include "ProtocolTest.h"
#include "VCReset.h"
#include "VCWriteSettings.h"

namespace velmorindal {
namespace {

template <typename Order>
constexpr std::uint8_t codeOf = 0;
template <>
constexpr std::uint8_t codeOf<VCReset> = 'z';
template <>
constexpr std::uint8_t codeOf<VCWriteSettings> = 'w';

struct OrderNames {
    template <typename Order>
    static std::string GetName(int /*index*/) {
        return codeOf<Order> == 'z' ? "VCReset" : "VCWriteSettings";
    }
};

template <typename Order>
class HeaderAloneTest : public testing::Test {};

using Orders = testing::Types<VCReset, VCWriteSettings>;
TYPED_TEST_SUITE(HeaderAloneTest, Orders, OrderNames);

TYPED_TEST(HeaderAloneTest, IsAllThatIsSentEvenWhileInvalid) {
    const ByteBuffer header{'c', 'b', codeOf<TypeParam>, 0x00};
    TypeParam order;
    EXPECT_EQ(order.serialize(), header);
    order._valid = false;
    EXPECT_EQ(order.serialize(), header);
}

TYPED_TEST(HeaderAloneTest, CannotBeReceived) {
    TypeParam order;
    EXPECT_EQ(errorOf([&] {
                  order.deserialize(ByteBuffer{'r', 'b', codeOf<TypeParam>, 0x00});
              }),
              VelmorindalError::NotImplementedError);
    EXPECT_TRUE(order._valid);
}

}  // namespace
}  // namespace velmorindal
