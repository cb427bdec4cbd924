# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# tavelin, the workstation. As with the command line, all but its main() is a library for the tests.

file(GLOB_RECURSE desktop_sources CONFIGURE_DEPENDS standalone/desktop/*.cpp)
file(GLOB desktop_resources CONFIGURE_DEPENDS standalone/desktop/*.qrc)
if(NOT "${CMAKE_SOURCE_DIR}/standalone/desktop/main.cpp" IN_LIST desktop_sources)
    return()
endif()
list(FILTER desktop_sources EXCLUDE REGEX "/main\\.cpp$")

find_package(Qt6 QUIET COMPONENTS Widgets PrintSupport Svg Network)
if(NOT Qt6_FOUND)
    message(STATUS "Qt 6 is not installed: building without the workstation")
    return()
endif()

add_library(tavelin-parts STATIC ${desktop_sources} ${desktop_resources})
set_target_properties(tavelin-parts PROPERTIES AUTOMOC ON AUTORCC ON)
target_link_libraries(tavelin-parts
    PUBLIC RuvMod ClassKrn Qt6::Widgets Qt6::PrintSupport Qt6::Svg Qt6::Network
    PRIVATE ruv_standalone_includes ruv_third_party)
file(GLOB help_pages CONFIGURE_DEPENDS docs/masks/*.md docs/masks/*.png docs/masks/*.svg)
qt_add_resources(tavelin-parts help PREFIX "/masks" BASE docs/masks FILES ${help_pages})
qt_add_resources(tavelin-parts help-desk PREFIX "/desk" BASE docs FILES docs/szene.md)
file(GLOB example_cases CONFIGURE_DEPENDS examples/*.json)
qt_add_resources(tavelin-parts examples PREFIX "/examples" BASE examples FILES ${example_cases})
file(GLOB example_recordings CONFIGURE_DEPENDS examples/aufzeichnungen/*)
qt_add_resources(tavelin-parts recordings PREFIX "/recordings" BASE examples/aufzeichnungen
    FILES ${example_recordings})
add_executable(tavelin standalone/desktop/main.cpp)
target_link_libraries(tavelin PRIVATE tavelin-parts ruv_standalone_includes)
if(TARGET RuvVideo)
    add_dependencies(tavelin RuvVideo)
endif()
