# Debian packages, made by cpack from the components that Install.cmake names.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "drvrepo maintainers <maintainers@drvrepo.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
# Each component's description begins with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL libraries development shell)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(runtime_package libdrvrepo${PROJECT_VERSION_MAJOR})

set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARIES_DESCRIPTION "registry of a process's drivers (libraries)
Lets the components of a process add and find drivers, and hear, in an exact
order, what comes, goes and changes.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libdrvrepo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} ${same_version}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "registry of a process's drivers (development files)
Headers, CMake and pkg-config files to build against libdrvrepo and libutility.")

set(CPACK_DEBIAN_SHELL_PACKAGE_NAME drvsh)
set(CPACK_DEBIAN_SHELL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_SHELL_PACKAGE_DEPENDS "${runtime_package} ${same_version}")
set(CPACK_COMPONENT_SHELL_DESCRIPTION "shell for the registry of a process's drivers
Adds drivers, listeners, attachments and channel groups from scripts, a
terminal or a line configuration, and shows or draws what the listeners are
told.")

if(CMAKE_CROSSCOMPILING)
    # The target's packages aren't on this machine, so nothing here can tell which libraries are
    # whose: by hand, from what the libraries need (which a test compares).
    set(system_libraries "libc6 (>= 2.34), libgcc-s1 (>= 3.5), libstdc++6 (>= 12)")
    set(CPACK_DEBIAN_LIBRARIES_PACKAGE_DEPENDS "${system_libraries}")
    string(APPEND CPACK_DEBIAN_SHELL_PACKAGE_DEPENDS ", ${system_libraries}")
else()
    set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_SHELL_PACKAGE_SHLIBDEPS ON) # libedit among them, where it was there
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
endif()
include(CPack)
