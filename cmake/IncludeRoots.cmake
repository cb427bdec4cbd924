# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# Include folders made of links, because an include folder exposes everything below it: the top folder would show
# standalone/ to the module, and /usr/include would show the C library of Linux to the Windows compiler.

set(include_roots "${CMAKE_BINARY_DIR}/include")

file(MAKE_DIRECTORY "${include_roots}/module")
foreach(folder host frame masks chart res)
    file(CREATE_LINK "${CMAKE_SOURCE_DIR}/${folder}" "${include_roots}/module/${folder}" SYMBOLIC)
endforeach()
add_library(ruv_module_includes INTERFACE)
target_include_directories(ruv_module_includes INTERFACE "${include_roots}/module")

add_library(ruv_standalone_includes INTERFACE)
target_include_directories(ruv_standalone_includes INTERFACE "${CMAKE_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}/standalone")

# Header-only libraries, included as <nlohmann/json.hpp>, <stb/stb_truetype.h> and <utf8cpp/utf8.h>.
file(MAKE_DIRECTORY "${include_roots}/third-party")
foreach(folder nlohmann stb utf8cpp)
    if(NOT EXISTS "/usr/include/${folder}")
        message(FATAL_ERROR "/usr/include/${folder} is missing: install the packages of cmake/packages.txt")
    endif()
    file(CREATE_LINK "/usr/include/${folder}" "${include_roots}/third-party/${folder}" SYMBOLIC)
endforeach()
add_library(ruv_third_party INTERFACE)
target_include_directories(ruv_third_party SYSTEM INTERFACE "${include_roots}/third-party")

# What the module really sees, for cmake/check-layering.sh.
file(GENERATE OUTPUT "${include_roots}/module.txt"
    CONTENT "$<JOIN:$<TARGET_PROPERTY:RuvMod,INCLUDE_DIRECTORIES>,\n>\n")
