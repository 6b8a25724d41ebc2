# What an installation holds: the library with its modules beside it, the public headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)
set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/RkUtilities)

install(TARGETS RkUtilities EXPORT RkUtilitiesTargets)
get_property(modules DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTY RK_MODULES)
if(modules)
    install(TARGETS ${modules} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
foreach(header IN LISTS publicHeaders)
    get_filename_component(area ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/RkUtilities/${area})
endforeach()

install(EXPORT RkUtilitiesTargets NAMESPACE RkUtilities:: DESTINATION ${packageFolder})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/RkUtilitiesConfig.cmake.in RkUtilitiesConfig.cmake
    INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(RkUtilitiesConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RkUtilitiesConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/RkUtilitiesConfigVersion.cmake DESTINATION ${packageFolder})

# pkg-config wants the files of Requires.private to be there even for a mere compilation, so the shared library, whose
# users need no development package of ours, lists none. The prefix is relative: an installation may be moved.
if(NOT BUILD_SHARED_LIBS)
    set(pcStaticFlag " -DRKUTILITIES_STATIC")
    set(pcRequires " icu-i18n icu-uc expat sqlite3")
    set(pcLibraries " -lstdc++ -lm")
endif()
file(RELATIVE_PATH pcPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pcPrefix ${pcPrefix})
configure_file(${PROJECT_SOURCE_DIR}/cmake/RkUtilities.pc.in RkUtilities.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/RkUtilities.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
