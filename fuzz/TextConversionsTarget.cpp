// Any text as a Boolean value and as a number, and any float as a text: compares the program with the oracle.

#include "TextConversions.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "ConversionOracle.h"
#include "Print.h"
#include "Requirement.h"
#include "TwoDecimals.h"

namespace velmorindal {
namespace {

std::string bits(float value) {
    return std::to_string(std::bit_cast<std::uint32_t>(value));
}

void checkText(const std::string& text) {
    require(booleanValue(text) == oracle::booleanValue(text), "a text is true where the oracle says so");
    requireEqual(bits(floatValue(text)), bits(oracle::floatValue(text)),
                 "a text is the number that the oracle reads, bit for bit");
}

void checkNumber(float value) {
    requireEqual(twoDecimals(value), oracle::twoDecimals(value),
                 "a number has the decimals that printf gives");
    if (!std::isfinite(value)) {
        return;
    }
    const std::string printed = PrintItem{value}.text();
    requireEqual(bits(floatValue(printed)), bits(value), "a printed number reads back as what it was");
    require(printed.find_first_of(".e") != std::string::npos, "a printed number is seen to be no integer");
}

}  // namespace
}  // namespace velmorindal

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velmorindal::checkText({reinterpret_cast<const char*>(data), size});
    if (float value = 0.0F; size >= sizeof value) {
        std::memcpy(&value, data, sizeof value);
        velmorindal::checkNumber(value);
    }
    return 0;
}
