#include "Reason.h"

namespace velmorindal {

std::string asReason(std::string_view dialogText) {
    std::string reason;
    for (const char character : dialogText) {
        if (character != '\n') {
            reason += character;
        } else if (!reason.empty() && reason.back() != ' ') {
            reason += ' ';
        }
    }
    return reason;
}

}  // namespace velmorindal
