# The settings file and the printed lines convert floats independently of the locale, which older standard libraries cannot
# do. One message here replaces many from the compiler.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("
    #include <charconv>
    int main(int, char** arguments) {
        float value = 0.0F;
        std::from_chars(arguments[0], arguments[0] + 1, value);
        std::to_chars(arguments[0], arguments[0] + 1, value, std::chars_format::fixed, 2);
    }" VELMORINDAL_CONVERTS_FLOATS)
if(NOT VELMORINDAL_CONVERTS_FLOATS)
    message(FATAL_ERROR "The C++ standard library has no std::from_chars and std::to_chars for float. "
        "It needs at least libstdc++ 11 or libc++ 20.")
endif()
