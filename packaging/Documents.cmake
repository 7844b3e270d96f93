# The manual pages, the changelog and the copyright, compressed as distributions expect. Without a time stamp, so that the
# same sources give the same files.
find_program(GZIP_PROGRAM gzip)

function(install_compressed source destination)
    if(NOT GZIP_PROGRAM)
        install(FILES ${source} DESTINATION ${destination})
        return()
    endif()
    cmake_path(GET source FILENAME name)
    set(compressed ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
    add_custom_command(OUTPUT ${compressed}
        COMMAND sh -c "\"$1\" -9nc \"$2\" >\"$3\"" sh ${GZIP_PROGRAM} ${CMAKE_CURRENT_SOURCE_DIR}/${source} ${compressed}
        DEPENDS ${source}
        VERBATIM)
    set_property(DIRECTORY APPEND PROPERTY VELMORINDAL_COMPRESSED ${compressed})
    install(FILES ${compressed} DESTINATION ${destination})
endfunction()

install_compressed(velmorindal-setup.1 ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(velmorindal-simulator.1 ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(changelog ${CMAKE_INSTALL_DOCDIR})
install(FILES copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
get_property(compressed_documents DIRECTORY PROPERTY VELMORINDAL_COMPRESSED)
add_custom_target(velmorindal-documents ALL DEPENDS ${compressed_documents})
