# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# Data that is compiled into the libraries: the module's dialogs and texts, and the fonts of drawings.

# The resource compiler is the same for Linux and Windows; only its output is read, never linked by it.
find_program(WINDRES_PROGRAM x86_64-w64-mingw32-windres REQUIRED)

# Paths are relative to the build folder, where both commands run: windres hands them to the preprocessor through a shell,
# in which a blank or an apostrophe of the tree's own path would be one of the command.
# Compiles res/RuvMod.rc and embeds the result in `target` between ruvmod_res_begin and ruvmod_res_end.
function(ruv_add_resources target)
    set(compiled "${CMAKE_BINARY_DIR}/RuvMod.res")
    file(GLOB inputs CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/res/*")
    add_custom_command(
        OUTPUT "${compiled}"
        COMMAND "${WINDRES_PROGRAM}" --codepage=65001 -O res
            --preprocessor=gcc --preprocessor-arg=-E --preprocessor-arg=-xc --preprocessor-arg=-DRC_INVOKED
            --include-dir=include/module --include-dir=include/module/res
            -i include/module/res/RuvMod.rc -o RuvMod.res
        DEPENDS ${inputs}
        WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
        COMMENT "Compiling the module's resources"
        VERBATIM)
    set(embedding "${CMAKE_SOURCE_DIR}/res/Resources.S")
    set_source_files_properties("${embedding}" PROPERTIES
        OBJECT_DEPENDS "${compiled}"
        COMPILE_DEFINITIONS "RUVMOD_RES=\"RuvMod.res\"")
    target_sources(${target} PRIVATE "${embedding}")
endfunction()

# Gives the assembler source that embeds the fonts of `target` their paths.
function(ruv_embed_fonts target)
    set(embedding "${CMAKE_SOURCE_DIR}/standalone/drawing/EmbeddedFonts.S")
    set(NOTO_SANS_REGULAR NotoSans-Regular.ttf)
    set(NOTO_SANS_BOLD NotoSans-Bold.ttf)
    set(NOTO_SANS_MATH NotoSansMath-Regular.ttf)
    foreach(macro NOTO_SANS_REGULAR NOTO_SANS_BOLD NOTO_SANS_MATH)
        set(font "/usr/share/fonts/truetype/noto/${${macro}}")
        if(NOT EXISTS "${font}")
            message(FATAL_ERROR "${font} is missing: install the packages of cmake/packages.txt")
        endif()
        set_property(SOURCE "${embedding}" APPEND PROPERTY OBJECT_DEPENDS "${font}")
        set_property(SOURCE "${embedding}" APPEND PROPERTY COMPILE_DEFINITIONS "${macro}=\"${font}\"")
    endforeach()
endfunction()

# Embeds the help pages in `target`: every page after a zero byte and a line with its number.
function(ruv_embed_help target)
    file(GLOB pages CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/docs/masks/*.md")
    set(data "")
    foreach(page ${pages})
        get_filename_component(name "${page}" NAME)
        if(name MATCHES "^([0-9]+)-")
            string(APPEND data "    .byte 0\n    .ascii \"${CMAKE_MATCH_1}\\n\"\n    .incbin \"${page}\"\n")
        endif()
    endforeach()
    set(embedding "${CMAKE_BINARY_DIR}/HelpPages.S")
    configure_file("${CMAKE_SOURCE_DIR}/cmake/HelpPages.S.in" "${embedding}" @ONLY)
    set_property(SOURCE "${embedding}" PROPERTY OBJECT_DEPENDS "${pages}")
    target_sources(${target} PRIVATE "${embedding}")
endfunction()
