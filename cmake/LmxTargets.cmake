# How every target of the project is compiled, and how a folder's test files become tests.

# Floating-point results are part of what the library promises: no contraction into fused operations.
function(lmx_compile_options target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE -Wno-restrict) # false alarms on std::string, mended in GCC 13
    endif()
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        target_compile_options(${target} PRIVATE -Wno-sign-conversion) # which GCC does not count to -Wconversion
    endif()
    if(LMX_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(LMX_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${LMX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${LMX_SANITIZE})
    endif()
endfunction()

# lmx_precompile(<target> <header>...): headers that nearly every source reads, read once.
function(lmx_precompile target)
    target_precompile_headers(${target} PRIVATE <QString> <QWidget> <algorithm> <cmath> <functional> <memory> <vector>
                              ${ARGN})
endfunction()

# lmx_test_options(<target>): tests take longer to compile than to run. Qt's names of their folders would keep them from
# sharing precompiled headers.
function(lmx_test_options target)
    lmx_compile_options(${target})
    target_compile_options(${target} PRIVATE -O0 -g1 -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
endfunction()

# lmx_add_tests(<folder> <unit>...): compiles <unit>Test.cpp of the current folder into one program and registers
# one test for each unit, which runs the suites of that file; each runs a second time under a decimal comma, but those of
# LMX_UNITS_WITHOUT_NUMBERS, which look at none.
function(lmx_add_tests folder)
    set(program lmxTests${folder})
    list(TRANSFORM ARGN APPEND Test.cpp OUTPUT_VARIABLE sources)
    add_executable(${program} ${sources})
    target_link_libraries(${program} PRIVATE lmxTestSupport)
    lmx_test_options(${program})
    target_precompile_headers(${program} REUSE_FROM lmxTestSupport)
    foreach(unit ${ARGN})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${unit}Test.cpp)
        file(STRINGS ${unit}Test.cpp lines REGEX "^(TEST|TEST_F|TEST_P|TYPED_TEST)\\(")
        set(filter "")
        foreach(line ${lines})
            string(REGEX REPLACE "^[A-Z_]+\\( *([A-Za-z0-9_]+).*" "\\1" suite "${line}")
            list(APPEND filter "${suite}.*" "${suite}/*" "*/${suite}.*")
        endforeach()
        list(REMOVE_DUPLICATES filter)
        list(JOIN filter ":" filter)
        if(NOT filter)
            message(FATAL_ERROR "${unit}Test.cpp holds no test")
        endif()
        add_test(NAME ${folder}/${unit} COMMAND ${program} --gtest_filter=${filter})
        set_tests_properties(${folder}/${unit} PROPERTIES TIMEOUT 1500 ENVIRONMENT "${LMX_TEST_ENVIRONMENT}")
        if(unit IN_LIST LMX_UNITS_WITHOUT_NUMBERS)
            continue()
        endif()
        add_test(NAME ${folder}/${unit}/comma COMMAND ${program} --gtest_filter=${filter})
        set_tests_properties(${folder}/${unit}/comma PROPERTIES TIMEOUT 1500 LABELS comma
                             ENVIRONMENT "${LMX_TEST_ENVIRONMENT};LMX_TEST_DECIMAL_SEPARATOR=,")
    endforeach()
endfunction()

# lmx_halve_chaos(FOLDER UNIT FILTER): has a chaos among the tests of a folder, the longest of all, go in two halves, one
# for each of two cores. What it looks for shows under the sanitizers; without them each place meets a third of the deeds.
function(lmx_halve_chaos folder unit filter)
    set(environment "${LMX_TEST_ENVIRONMENT};GTEST_TOTAL_SHARDS=2")
    if(NOT LMX_SANITIZE)
        list(APPEND environment LMX_CHAOS_SHARE=3)
    endif()
    set_tests_properties(${folder}/${unit} PROPERTIES ENVIRONMENT "${environment};GTEST_SHARD_INDEX=0")
    add_test(NAME ${folder}/${unit}/half COMMAND lmxTests${folder} --gtest_filter=${filter})
    set_tests_properties(${folder}/${unit}/half PROPERTIES TIMEOUT 1500 ENVIRONMENT "${environment};GTEST_SHARD_INDEX=1")
endfunction()

# lmx_check_headers(): compiles each header of the library that no source of its name includes first, so that none leans
# on what another one happened to include. A source proves the same of its own header.
function(lmx_check_headers)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/lmx/*.h)
    set(sources "")
    foreach(header ${headers})
        if(header MATCHES "^lmx/DataSources/" AND NOT TARGET lmxDataSourcesInside)
            continue()
        endif()
        string(REGEX REPLACE "\\.h$" ".cpp" own ${header})
        string(REPLACE "/Private/" "/" outside ${own})
        if(EXISTS ${PROJECT_SOURCE_DIR}/${own} OR EXISTS ${PROJECT_SOURCE_DIR}/${outside})
            continue()
        endif()
        string(REGEX REPLACE "[/.]" "_" name ${header})
        set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "#include <${header}>\n")
        list(APPEND sources ${source})
    endforeach()
    add_library(lmxHeaders OBJECT ${sources})
    target_link_libraries(lmxHeaders PRIVATE lmxInside $<TARGET_NAME_IF_EXISTS:lmxDataSourcesInside>)
    target_compile_options(lmxHeaders PRIVATE -O0 -g0)
    lmx_compile_options(lmxHeaders)
endfunction()
