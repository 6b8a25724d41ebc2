# gdb loads a library's printers from the file NAME-gdb.py: beside the library in the build tree, below
# share/gdb/auto-load in an installation. That file finds the printers from where the library lies. lldb and users of
# the static library import a printer.
set(debuggers ${PROJECT_SOURCE_DIR}/tools/debuggers)
set(debuggersFolder ${CMAKE_INSTALL_DATADIR}/rkutilities/debuggers)
set(autoLoad libRkUtilities.so.${PROJECT_VERSION}-gdb.py)

if(RKUTILITIES_SHARED)
    set(toDebuggers ${debuggers})
    configure_file(${debuggers}/autoload.py.in ${autoLoad} @ONLY)
endif()

if(RKUTILITIES_INSTALL)
    install(FILES ${debuggers}/rkutilities_values.py ${debuggers}/rkutilities_gdb.py ${debuggers}/rkutilities_lldb.py
            DESTINATION ${debuggersFolder} COMPONENT development)
    if(RKUTILITIES_SHARED)
        file(RELATIVE_PATH toDebuggers /${CMAKE_INSTALL_LIBDIR} /${debuggersFolder})
        configure_file(${debuggers}/autoload.py.in installed/${autoLoad} @ONLY)
        install(FILES ${CMAKE_CURRENT_BINARY_DIR}/installed/${autoLoad}
                DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR} COMPONENT development)
    endif()
endif()
