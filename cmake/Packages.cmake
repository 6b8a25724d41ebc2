# Debian packages: .ci/packages makes them from a build of the preset "package". The library's package is named after
# the minor version, so that two of them stand side by side.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME rkutilities)
set(CPACK_PACKAGE_CONTACT "RkUtilities maintainers <maintainers@rkutilities.net>")

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "exact services for desktop applications")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development tools)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/RkUtilities)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_BUILD_SOURCE_DIRS ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})

set(services "Text, numbers, money and dates in the user's locale, paths and files,
a message log in XML, preferences, geometry, XML names, colors and
identifiers for desktop applications, exact at their edges.")
set(libraryPackage librkutilities${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${libraryPackage})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "shared library\n${services}")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME librkutilities-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${libraryPackage} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "headers\n${services}")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME rkutilities-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${libraryPackage} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "mind maps of outlines, and a reader of message logs\n${services}")

# What Debian asks of each package: a list of changes and a word on the licence.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upperComponent)
    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upperComponent}_PACKAGE_NAME})
    set(changes ${PROJECT_BINARY_DIR}/${component}/changelog)
    file(WRITE ${changes} "rkutilities (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
        "  * See CHANGELOG.md.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    execute_process(COMMAND gzip -9nf ${changes} COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${changes}.gz ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents} COMPONENT ${component})
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/copyright DESTINATION ${documents} COMPONENT ${component})
endforeach()

# Manual pages are compressed in packages alone.
file(WRITE ${PROJECT_BINARY_DIR}/CompressManuals.cmake [[
file(GLOB pages ${CPACK_TEMPORARY_DIRECTORY}/tools/usr/share/man/man1/*.1)
execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
]])
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/CompressManuals.cmake)

include(CPack)
