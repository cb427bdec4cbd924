# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# One program per fuzz/*Fuzz.cpp, under libFuzzer with the address and undefined-behaviour sanitizers.

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "RUV_FUZZ needs clang: use the preset fuzz")
endif()
file(GLOB fuzz_sources CONFIGURE_DEPENDS fuzz/*Fuzz.cpp)
foreach(source IN LISTS fuzz_sources)
    get_filename_component(name "${source}" NAME_WE)
    if((name STREQUAL "VideoFuzz" AND NOT TARGET ruv_libav) OR (name STREQUAL "MbTilesFuzz" AND NOT SQLite3_FOUND))
        continue()
    endif()
    add_executable(${name} "${source}")
    target_link_libraries(${name} PRIVATE tavelin-cli-parts RuvMod ClassKrn ruv_standalone_includes ruv_third_party)
    if(name STREQUAL "OnnxFuzz") # not in a library that can be linked to
        target_sources(${name} PRIVATE standalone/vision/video/OnnxFile.cpp)
    endif()
    if(name STREQUAL "VideoFuzz")
        target_link_libraries(${name} PRIVATE ruv_libav)
        add_dependencies(${name} RuvVideo)
    elseif(name STREQUAL "MbTilesFuzz")
        target_link_libraries(${name} PRIVATE SQLite::SQLite3)
    endif()
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endforeach()
