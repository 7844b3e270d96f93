# The Debian package. Its dependencies are computed on the system for which it is built: the libraries of the programs,
# and the package of the program that the device rule runs.
find_program(DPKG_QUERY dpkg-query)
if(NOT DPKG_QUERY)
    return()
endif()
execute_process(
    COMMAND ${DPKG_QUERY} --search /usr/bin/pgrep
    RESULT_VARIABLE result
    OUTPUT_VARIABLE owner
    ERROR_VARIABLE reason
    ERROR_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
    message(STATUS "No Debian package can be made here. ${reason}")
    return()
endif()
string(REGEX REPLACE ":.*" "" CPACK_DEBIAN_PACKAGE_DEPENDS "${owner}")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmorindal-setup)
set(CPACK_PACKAGE_VENDOR "The Velmorindal Setup developers")
# The field must hold an address. There is none yet, and this reserved domain can never have one.
set(CPACK_PACKAGE_CONTACT "The Velmorindal Setup developers <velmorindal-setup@example.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "setup wizard for the Velmorindal assistive switch")
set(CPACK_PACKAGE_DESCRIPTION "The Velmorindal is an assistive switch worn on the neck, which turns hums into
switch closures or keystrokes. With this wizard a clinician or carer sets it
up for its wearer over a USB dongle: mode, outputs, keystrokes and the two
thresholds, with live readings while the wearer hums.
.
A simulated dongle for trying the wizard without a device is included.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/PrepareFiles.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
