# The entry in the desktop's menu, its icon in every size, and what a software centre shows.
install(FILES velmorindal-setup.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

set(VELMORINDAL_SCREENSHOTS_URL "https://velmorindal.invalid/screenshots" CACHE STRING
    "Where the pictures that the tour takes are published")
configure_file(invalid.velmorindal.setup.metainfo.xml.in invalid.velmorindal.setup.metainfo.xml @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/invalid.velmorindal.setup.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

add_executable(velmorindal-render-icon RenderIcon.cpp)
target_link_libraries(velmorindal-render-icon PRIVATE velmorindal_diagnostics velmorindal_flags Qt6::Gui Qt6::Svg)
set_target_properties(velmorindal-render-icon PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})

set(logo ${PROJECT_SOURCE_DIR}/src/ui/look/images/logo.svg)
set(icon_theme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${logo} DESTINATION ${icon_theme}/scalable/apps RENAME velmorindal-setup.svg)
foreach(size 16 22 24 32 48 64 96 128 256 512)
    set(icon ${CMAKE_CURRENT_BINARY_DIR}/icons/${size}x${size}/velmorindal-setup.png)
    cmake_path(GET icon PARENT_PATH directory)
    add_custom_command(OUTPUT ${icon}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
        COMMAND velmorindal-render-icon ${logo} ${size} ${icon}
        DEPENDS ${logo} velmorindal-render-icon
        VERBATIM)
    list(APPEND icons ${icon})
    install(FILES ${icon} DESTINATION ${icon_theme}/${size}x${size}/apps)
endforeach()
add_custom_target(velmorindal-icons ALL DEPENDS ${icons})
