# What the library is built on, and the names that newer versions of it give to things.
include(CheckCXXSymbolExists)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(EXPAT REQUIRED)
find_package(SQLite3 REQUIRED)
if(NOT TARGET SQLite3::SQLite3)  # the name since CMake 4.3
    add_library(SQLite3::SQLite3 ALIAS SQLite::SQLite3)
endif()

# Sources call expat by its newest names; rk_use_expat gives the names to what an older expat has.
set(CMAKE_REQUIRED_LIBRARIES EXPAT::EXPAT)
check_cxx_symbol_exists(XML_SetHashSalt16Bytes expat.h RKUTILITIES_EXPAT_HAS_LONG_SECRET)    # 2.8
check_cxx_symbol_exists(XML_GetCurrentLineNumber64 expat.h RKUTILITIES_EXPAT_HAS_LONG_LINES)  # 2.9
unset(CMAKE_REQUIRED_LIBRARIES)

function(rk_use_expat target)
    target_link_libraries(${target} PRIVATE EXPAT::EXPAT)
    target_compile_definitions(${target} PRIVATE
        $<$<BOOL:${RKUTILITIES_EXPAT_HAS_LONG_SECRET}>:RK_EXPAT_HAS_LONG_SECRET>
        $<$<NOT:$<BOOL:${RKUTILITIES_EXPAT_HAS_LONG_LINES}>>:XML_GetCurrentLineNumber64=XML_GetCurrentLineNumber>)
endfunction()
