# What every target of this project is built with: the language, the warnings, the arithmetic and the sanitizers.
function(rk_own_target target)
    set_target_properties(${target} PROPERTIES
        CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF CXX_SCAN_FOR_MODULES OFF
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        BUILD_RPATH_USE_ORIGIN ON)  # the same bytes wherever it is built
    # Geometry promises exact single and double steps: no fused multiply-add may join two of them.
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off
        $<$<BOOL:${RKUTILITIES_WERROR}>:-Werror>)
    # g++ 12 warns of overlapping copies inside std::string where nothing overlaps (its bug 105329).
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    # In one file with its callers, the search for a short literal is inlined as far as branches of long texts.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_UNITY_BUILD)
        target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overread)
    endif()
    # std::stable_sort of g++ 12 calls a function that C++17 deprecates.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 19)
        target_compile_options(${target} PRIVATE -Wno-deprecated-declarations)
    endif()
    # Google Benchmark's macros count with __COUNTER__.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 22)
        target_compile_options(${target} PRIVATE -Wno-c2y-extensions)
    endif()
    if(RKUTILITIES_SANITIZE)
        set(sanitize -fsanitize=${RKUTILITIES_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_compile_options(${target} PRIVATE ${sanitize})
        target_link_options(${target} PRIVATE ${sanitize})
    endif()
endfunction()
