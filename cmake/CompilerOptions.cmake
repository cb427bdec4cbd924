# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# What every source of the tree is compiled and linked with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo)
endif()
set(CMAKE_CXX_FLAGS_DEBUG "-Og -g")
if(RUV_SANITIZE)
    set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1 -D_GLIBCXX_ASSERTIONS")
else()
    set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

# No contraction of a*b+c: the same double on every compiler and processor.
add_compile_options(
    "$<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wconversion;-Wshadow;-Werror;-ffp-contract=off>"
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")

if(RUV_SANITIZE)
    add_compile_options(-fsanitize=${RUV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # Under sanitizers GCC sees uninitialised members in every use of <regex>.
    add_compile_options("$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-maybe-uninitialized>")
    add_link_options(-fsanitize=${RUV_SANITIZE})
endif()

# What turns memory faults into an end of the program: checked by ./test hardening. The sanitizers see more by themselves,
# and Windows has its own ways.
if(NOT WIN32 AND NOT RUV_SANITIZE)
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    add_compile_definitions("$<$<COMPILE_LANGUAGE:CXX>:_GLIBCXX_ASSERTIONS>")
    add_link_options(-Wl,-z,relro,-z,now)
endif()

# A library calls its own instances of templates, not those of a program that is compiled with other options.
if(NOT WIN32)
    add_link_options("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-Bsymbolic-functions>")
endif()

if(WIN32)
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
    add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
    # The DLLs need nothing beside them but each other, and export nothing of the compiler's own libraries.
    add_link_options(-static -Wl,--exclude-libs,ALL
        "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,--export-all-symbols>")
elseif(NOT RUV_SANITIZE)
    # A library that calls what it does not link is an error here as it is on Windows.
    add_link_options("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,--no-undefined>")
endif()
