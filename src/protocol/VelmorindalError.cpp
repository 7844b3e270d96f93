#include "VelmorindalError.h"

namespace velmorindal {

std::string_view caseName(VelmorindalError error) {
    switch (error) {
        case VelmorindalError::NotImplementedError:
            return "NotImplementedError";
        case VelmorindalError::InvalidMessageError:
            return "InvalidMessageError";
        case VelmorindalError::NoConnectionError:
            return "NoConnectionError";
    }
    return "";
}

const char* VelmorindalException::what() const noexcept {
    return caseName(error).data();  // every name is a literal, so it ends in a zero byte
}

}  // namespace velmorindal
