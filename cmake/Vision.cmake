# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# RuvFunc: the vision library. Geometry, tracks and speeds are plain C++ and built everywhere. What decodes videos and
# touches pictures is RuvVideo, which RuvFunc loads when the first video is opened: the libraries behind it take longer
# to load than most masks to compute.

file(GLOB vision_sources CONFIGURE_DEPENDS standalone/vision/*.cpp)
add_library(RuvFunc SHARED ${vision_sources})
target_link_libraries(RuvFunc PRIVATE ruv_standalone_includes ${CMAKE_DL_LIBS})

option(RUV_VIDEO "Read videos when OpenCV and libav are installed" ON)
if(NOT RUV_VIDEO OR WIN32)
    return()
endif()

set(video_missing "")
find_path(OPENCV_INCLUDE opencv2/core.hpp PATH_SUFFIXES opencv4)
if(NOT OPENCV_INCLUDE)
    list(APPEND video_missing opencv)
endif()
foreach(name core imgproc dnn)
    find_library(OPENCV_${name} opencv_${name})
    if(NOT OPENCV_${name})
        list(APPEND video_missing opencv_${name})
    endif()
endforeach()
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(LIBAV QUIET IMPORTED_TARGET libavformat libavcodec libswscale libavutil)
endif()
if(NOT TARGET PkgConfig::LIBAV)
    list(APPEND video_missing libav)
endif()
if(video_missing)
    message(STATUS "Not installed: ${video_missing}; building without reading videos")
    return()
endif()

# The tests write videos and need them too.
set(ruv_libav_libraries ${LIBAV_LINK_LIBRARIES} ${OPENCV_core} ${OPENCV_imgproc})
set(ruv_libav_includes "")
foreach(folder "${OPENCV_INCLUDE}" ${LIBAV_INCLUDE_DIRS})
    list(APPEND ruv_libav_includes "-isystem${folder}")
endforeach()
add_library(ruv_libav INTERFACE)
target_compile_options(ruv_libav INTERFACE ${ruv_libav_includes})
target_link_libraries(ruv_libav INTERFACE ${ruv_libav_libraries})

file(GLOB video_sources CONFIGURE_DEPENDS standalone/vision/video/*.cpp)
add_library(RuvVideo SHARED ${video_sources})
target_link_libraries(RuvVideo PRIVATE ClassKrn ruv_standalone_includes ruv_libav ${OPENCV_dnn})
target_compile_definitions(RuvFunc PRIVATE RUV_VIDEO_LIBRARY="$<TARGET_FILE_NAME:RuvVideo>")
set_target_properties(RuvFunc PROPERTIES BUILD_RPATH "$ORIGIN")
