# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# cmake -DPROGRAM=… -DENVIRONMENT=… -DOUTPUT=… -P ListSuites.cmake
# Writes one ctest test per suite of the GoogleTest program.

execute_process(COMMAND "${PROGRAM}" --gtest_list_tests
    OUTPUT_VARIABLE listing
    COMMAND_ERROR_IS_FATAL ANY)
# A suite stands at the start of its line and ends in a dot; its tests are indented.
string(REGEX MATCHALL "\n[^ \n]+\\." suites "\n${listing}")
set(script "")
foreach(line IN LISTS suites)
    string(STRIP "${line}" suite)
    string(REGEX REPLACE "\\.$" "" suite "${suite}")
    string(APPEND script
        "add_test([==[${suite}]==] [==[${PROGRAM}]==] [==[--gtest_filter=${suite}.*]==])\n"
        "set_tests_properties([==[${suite}]==] PROPERTIES TIMEOUT 300 ENVIRONMENT [==[${ENVIRONMENT}]==])\n")
endforeach()
file(WRITE "${OUTPUT}" "${script}")
