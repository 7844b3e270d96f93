# What every target of the project is compiled and linked with, gathered in one interface target.
add_library(velmorindal_flags INTERFACE)
target_compile_options(velmorindal_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2)

if(VELMORINDAL_SANITIZE)
    target_compile_options(velmorindal_flags INTERFACE
        -fsanitize=${VELMORINDAL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The checks that are woven in hide initializations from the compiler; the release build has this warning.
        target_compile_options(velmorindal_flags INTERFACE -Wno-maybe-uninitialized)
    endif()
    target_link_options(velmorindal_flags INTERFACE -fsanitize=${VELMORINDAL_SANITIZE})
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(velmorindal_flags INTERFACE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        # An index or an optional that is not there ends the program here, and sends no wrong byte.
        -D_GLIBCXX_ASSERTIONS)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
        target_compile_options(velmorindal_flags INTERFACE -fcf-protection)
    endif()
    if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
        target_compile_options(velmorindal_flags INTERFACE -fstack-clash-protection)
        target_link_options(velmorindal_flags INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
    endif()
endif()
