#include "HexText.h"

#include <unistd.h>

#include <cstdlib>

#include "Hexadecimal.h"
#include "Print.h"

namespace velmorindal {

void refuse(std::string_view request) {
    writeLine(STDERR_FILENO, "not a request: " + std::string{request});
    std::exit(EXIT_FAILURE);
}

ByteBuffer bytesFrom(std::string_view text) {
    ByteBuffer bytes;
    if (text == "-") {
        return bytes;
    }
    if (text.size() % 2 != 0) {
        refuse(text);
    }
    for (std::size_t start = 0; start < text.size(); start += 2) {
        bytes.push_back(numberFrom<std::uint8_t>(text.substr(start, 2), 16));
    }
    return bytes;
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    return bytes.empty() ? "-" : hexadecimal(bytes, "");
}

}  // namespace velmorindal
