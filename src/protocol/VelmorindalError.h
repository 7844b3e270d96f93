#pragma once

#include <exception>
#include <string_view>

namespace velmorindal {

/// Why a message or an exchange failed.
enum class VelmorindalError {
    NotImplementedError,  ///< the message class does not support that direction
    InvalidMessageError,  ///< a message whose `_valid` is false was asked to serialize
    NoConnectionError,    ///< an exchange without an open port or without an answer
};

/// The case's name as it is spelled here; an empty text for a value outside the cases.
std::string_view caseName(VelmorindalError error);

/// Thrown by the messages and by the model's exchanges.
class VelmorindalException : public std::exception {
  public:
    explicit VelmorindalException(VelmorindalError velmorindalError) : error{velmorindalError} {}

    /// The case's name.
    const char* what() const noexcept override;

    VelmorindalError error;
};

}  // namespace velmorindal
