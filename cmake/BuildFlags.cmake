# The compiler and linker flags of every target, in one interface target.
add_library(velmorindal_flags INTERFACE)
target_compile_options(velmorindal_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2
    # The attributes of Mutex.h. GCC does not have them; the presets with sanitizers compile with Clang.
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>)

if(VELMORINDAL_SANITIZE)
    target_compile_options(velmorindal_flags INTERFACE
        -fsanitize=${VELMORINDAL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The sanitizers' checks hide initializations from the compiler. The release build has this warning.
        target_compile_options(velmorindal_flags INTERFACE -Wno-maybe-uninitialized)
    endif()
    target_link_options(velmorindal_flags INTERFACE -fsanitize=${VELMORINDAL_SANITIZE})
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(velmorindal_flags INTERFACE
        -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        # Access to a missing element or optional value ends the program before it can send a wrong byte.
        -D_GLIBCXX_ASSERTIONS)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
        target_compile_options(velmorindal_flags INTERFACE -fcf-protection)
    endif()
    if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
        target_compile_options(velmorindal_flags INTERFACE -fstack-clash-protection)
        target_link_options(velmorindal_flags INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
    endif()
endif()

# The same for tests and their tools. They run once after each build, so optimizing them would cost more time than it
# saves. Programs with and without the toolkit share precompiled headers, so all use the flags that the toolkit needs.
add_library(velmorindal_test_flags INTERFACE)
target_compile_options(velmorindal_test_flags INTERFACE -fPIC)
if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    # GCC is faster with a little optimization than with none, Clang with none.
    if("${CMAKE_CXX_COMPILER_ID} ${VELMORINDAL_TEST_COMPILER}" MATCHES "[Cc]lang")
        target_compile_options(velmorindal_test_flags INTERFACE -O0)
    else()
        target_compile_options(velmorindal_test_flags INTERFACE -Og)
    endif()
endif()
# The last of two options for the same check counts, so these must follow the flags above.
add_library(velmorindal_test_checks INTERFACE)
if(VELMORINDAL_SANITIZE MATCHES "undefined")
    # These check every pointer and make the compiler a third slower. The files of the program are compiled with them.
    target_compile_options(velmorindal_test_checks INTERFACE -fno-sanitize=null,alignment,object-size -g0)
endif()
target_link_libraries(velmorindal_test_flags INTERFACE velmorindal_flags velmorindal_test_checks)
