# CPack runs this on the files of the package. It strips the programs, and makes the directories readable for all users,
# whatever the umask of the build.
set(files ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
file(GLOB programs "${files}/bin/*")
if(NOT programs)
    message(FATAL_ERROR "There are no programs in ${files}/bin.")
endif()
execute_process(COMMAND strip --strip-all --remove-section=.comment --remove-section=.note ${programs}
    COMMAND_ERROR_IS_FATAL ANY)
file(CHMOD_RECURSE ${files} DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
