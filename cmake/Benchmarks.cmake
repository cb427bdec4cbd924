# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0

file(GLOB bench_sources CONFIGURE_DEPENDS bench/*.cpp)
if(NOT bench_sources)
    return()
endif()
find_package(benchmark QUIET)
if(NOT benchmark_FOUND)
    message(STATUS "libbenchmark-dev is not installed: building without the benchmarks")
    return()
endif()
# The one that writes a video sees libav and OpenCV.
set(video_libraries "")
if(TARGET ruv_libav)
    set(video_libraries ${ruv_libav_libraries})
    set_source_files_properties(bench/VideoBench.cpp PROPERTIES COMPILE_OPTIONS "${ruv_libav_includes}")
else()
    list(FILTER bench_sources EXCLUDE REGEX "/VideoBench\\.cpp$")
endif()
add_executable(ruvmod-bench EXCLUDE_FROM_ALL ${bench_sources})
target_link_libraries(ruvmod-bench
    PRIVATE tavelin-cli-parts RuvMod ClassKrn ruv_standalone_includes ruv_third_party ${video_libraries}
        benchmark::benchmark_main)
target_compile_definitions(ruvmod-bench PRIVATE
    TAVELIN_SOURCE_DIR="${CMAKE_SOURCE_DIR}" TAVELIN_CLI="$<TARGET_FILE:tavelin-cli>")
add_dependencies(ruvmod-bench tavelin-cli)
if(TARGET RuvVideo)
    add_dependencies(ruvmod-bench RuvVideo)
endif()
