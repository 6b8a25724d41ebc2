# What an installation holds: the library, the public headers and what they include, CMake's package, pkg-config's file.
include(CMakePackageConfigHelpers)
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/RkUtilities)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

install(TARGETS RkUtilities EXPORT RkUtilitiesTargets LIBRARY COMPONENT library NAMELINK_COMPONENT development)
# Public headers, and each private header that one of them includes, whichever it is.
set(installedHeaders)
set(foundHeaders ${publicHeaders})
while(foundHeaders)
    list(POP_FRONT foundHeaders header)
    if(NOT header IN_LIST installedHeaders)
        list(APPEND installedHeaders ${header})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
        file(STRINGS ${header} includes REGEX "^#include \"RkUtilities/")
        list(TRANSFORM includes REPLACE "^#include \"RkUtilities/(.*)\".*" "\\1")
        list(APPEND foundHeaders ${includes})
    endif()
endwhile()
foreach(header IN LISTS installedHeaders)
    if(header MATCHES "^platform/")
        message(FATAL_ERROR "A public header includes the private ${header}")
    endif()
    get_filename_component(room ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/RkUtilities/${room})
endforeach()

install(EXPORT RkUtilitiesTargets NAMESPACE RkUtilities:: DESTINATION ${packageFolder})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/RkUtilitiesConfig.cmake.in RkUtilitiesConfig.cmake
    INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(RkUtilitiesConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RkUtilitiesConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/RkUtilitiesConfigVersion.cmake DESTINATION ${packageFolder})

# pkg-config wants the files of Requires.private to be there even for a mere compilation, so the shared library, whose
# users need no development package of ours, lists no files. The prefix is relative: an installation may be moved.
if(NOT RKUTILITIES_SHARED)
    set(pcStaticFlag " -DRKUTILITIES_STATIC")
    set(pcRequires " icu-i18n icu-uc expat sqlite3")
    set(pcLibraries " -lstdc++ -lm")
endif()
file(RELATIVE_PATH pcPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pcPrefix ${pcPrefix})
configure_file(${PROJECT_SOURCE_DIR}/cmake/RkUtilities.pc.in RkUtilities.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RkUtilities.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
