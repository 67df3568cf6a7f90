# What `cmake --install` puts where. Three components, one for each package that is made of them:
# libraries, development (headers, links and what finds them), shell.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(installed_libraries utility drvrepo)
install(TARGETS ${installed_libraries} EXPORT drvrepo
    LIBRARY COMPONENT libraries NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/drvrepo utility/include/utility
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN *.h)

# A program's own search path doesn't reach what its libraries need; so drvrepo looks beside itself.
set_target_properties(drvrepo PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET drvsh)
    file(RELATIVE_PATH lib_from_bin
        ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(drvsh PROPERTIES INSTALL_RPATH "$ORIGIN/${lib_from_bin}")
    install(TARGETS drvsh COMPONENT shell)
endif()

# For CMake: find_package(drvrepo).
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/drvrepo)
install(EXPORT drvrepo NAMESPACE drvrepo:: FILE drvrepoConfig.cmake
    DESTINATION ${package_folder} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/drvrepoConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/drvrepoConfigVersion.cmake
    DESTINATION ${package_folder} COMPONENT development)

# For pkg-config. The files find the folders from where they lie, so that the tree can be moved.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR} OR IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
    message(FATAL_ERROR "CMAKE_INSTALL_LIBDIR and CMAKE_INSTALL_INCLUDEDIR must be relative")
endif()
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})

function(drvrepo_install_pc pc_name pc_library pc_requires pc_description)
    configure_file(cmake/library.pc.in ${pc_name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${pc_name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

drvrepo_install_pc(drvrepo-utility utility ""
    "Strings, containers and counted pointers under drvrepo")
drvrepo_install_pc(drvrepo drvrepo "drvrepo-utility = ${PROJECT_VERSION}" "${PROJECT_DESCRIPTION}")
