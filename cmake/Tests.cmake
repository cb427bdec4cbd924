# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# One program of tests, and one for the workstation's. ctest runs each suite as a process of its own.

find_package(GTest QUIET)
if(NOT GTest_FOUND)
    message(STATUS "GoogleTest is not installed: building without the tests")
    return()
endif()

# ruv_add_tests(name sources libraries environment): the suites are listed when the program has been linked.
function(ruv_add_tests name sources libraries environment)
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${libraries} ruv_standalone_includes ruv_third_party GTest::gtest)
    target_compile_definitions(${name} PRIVATE TAVELIN_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    # What is tested is optimised, the tests are not: they compile in half the time.
    target_compile_options(${name} PRIVATE -O0)
    set(suites "${CMAKE_BINARY_DIR}/${name}-suites.cmake")
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:${name}>" "-DENVIRONMENT=${environment}"
            "-DOUTPUT=${suites}" -P "${CMAKE_SOURCE_DIR}/cmake/ListSuites.cmake"
        BYPRODUCTS "${suites}"
        VERBATIM)
    set_property(DIRECTORY "${CMAKE_SOURCE_DIR}" APPEND PROPERTY TEST_INCLUDE_FILES "${suites}")
endfunction()

set(test_environment "TAVELIN_SOURCE_DIR=${CMAKE_SOURCE_DIR}" "TAVELIN_CLI=${CMAKE_BINARY_DIR}/bin/tavelin-cli")

file(GLOB_RECURSE test_sources CONFIGURE_DEPENDS tests/*.cpp)
set(desktop_test_sources ${test_sources})
list(FILTER test_sources EXCLUDE REGEX "/tests/desktop/")
list(FILTER desktop_test_sources INCLUDE REGEX "/tests/desktop/")
# Tests that write videos see libav and OpenCV, the others do not.
set(video_libraries "")
set(video_test_sources ${test_sources})
list(FILTER video_test_sources INCLUDE REGEX "/tests/vision/video/")
if(TARGET ruv_libav)
    set(video_libraries ${ruv_libav_libraries})
    set_source_files_properties(${video_test_sources} PROPERTIES COMPILE_OPTIONS "${ruv_libav_includes}")
else()
    list(FILTER test_sources EXCLUDE REGEX "/tests/vision/video/")
endif()

# The plain searches that fast ones are held against.
set_source_files_properties(tests/masks/SchrankenKurveTest.cpp PROPERTIES COMPILE_OPTIONS -O2)

# Tests that write map files see SQLite.
set(map_libraries "")
if(SQLite3_FOUND)
    set(map_libraries SQLite::SQLite3)
else()
    list(FILTER test_sources EXCLUDE REGEX "/(Tiles|KartenDatei)Test\\.cpp$")
endif()

if(TARGET tavelin-cli)
    ruv_add_tests(ruvmod-tests "${test_sources}"
        "tavelin-cli-parts;RuvMod;ClassKrn;${video_libraries};${map_libraries}" "${test_environment}")
    add_dependencies(ruvmod-tests tavelin-cli)
    if(TARGET RuvVideo)
        add_dependencies(ruvmod-tests RuvVideo)
    endif()
endif()
# Each fuzz target with its seeds, and some changes of them, as a test.
file(GLOB fuzz_sources CONFIGURE_DEPENDS fuzz/*Fuzz.cpp)
foreach(source IN LISTS fuzz_sources)
    get_filename_component(name "${source}" NAME_WE)
    if((name STREQUAL "VideoFuzz" AND NOT TARGET ruv_libav) OR (name STREQUAL "MbTilesFuzz" AND NOT SQLite3_FOUND))
        continue()
    endif()
    add_executable(${name}-replay "${source}" fuzz/ReplayMain.cpp)
    target_link_libraries(${name}-replay
        PRIVATE tavelin-cli-parts RuvMod ClassKrn ruv_standalone_includes ruv_third_party)
    if(name STREQUAL "OnnxFuzz") # not in a library that can be linked to
        target_sources(${name}-replay PRIVATE standalone/vision/video/OnnxFile.cpp)
    endif()
    if(name STREQUAL "VideoFuzz")
        target_link_libraries(${name}-replay PRIVATE ruv_libav)
        add_dependencies(${name}-replay RuvVideo)
    elseif(name STREQUAL "MbTilesFuzz")
        target_link_libraries(${name}-replay PRIVATE SQLite::SQLite3)
    endif()
    add_test(NAME ${name} COMMAND ${name}-replay --random 20 "${CMAKE_SOURCE_DIR}/fuzz/corpus/${name}")
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endforeach()
if(TARGET tavelin-parts AND desktop_test_sources)
    find_package(Qt6 REQUIRED COMPONENTS Test)
    ruv_add_tests(tavelin-tests "${desktop_test_sources}" "tavelin-parts;Qt6::Test"
        "${test_environment};QT_QPA_PLATFORM=offscreen")
    set_target_properties(tavelin-tests PROPERTIES AUTOMOC ON)
    add_dependencies(tavelin-tests tavelin)
endif()
