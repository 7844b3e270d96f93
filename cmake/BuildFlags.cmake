# What every target of the project is compiled and linked with, gathered in one interface target.
add_library(velmorindal_flags INTERFACE)
target_compile_options(velmorindal_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2
    # What Mutex.h says of locks. GCC does not know it; the presets with sanitizers compile with Clang.
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>)

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

# The same for tests and their tools. They run once: what the optimizer would save there, it costs many times over here.
# Programs with and without the toolkit share precompiled headers, and so they share what the toolkit asks for.
add_library(velmorindal_test_flags INTERFACE)
target_compile_options(velmorindal_test_flags INTERFACE -fPIC)
if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    # GCC is quicker with a little optimization than with none, Clang with none.
    if("${CMAKE_CXX_COMPILER_ID} ${VELMORINDAL_TEST_COMPILER}" MATCHES "[Cc]lang")
        target_compile_options(velmorindal_test_flags INTERFACE -O0)
    else()
        target_compile_options(velmorindal_test_flags INTERFACE -Og)
    endif()
endif()
# Of two options for one check the last counts, so that these have to follow the flags above.
add_library(velmorindal_test_checks INTERFACE)
if(VELMORINDAL_SANITIZE MATCHES "undefined")
    # These look at every pointer, and the compiler is a third slower. The program's own files keep them.
    target_compile_options(velmorindal_test_checks INTERFACE -fno-sanitize=null,alignment,object-size -g0)
endif()
target_link_libraries(velmorindal_test_flags INTERFACE velmorindal_flags velmorindal_test_checks)
