# A fuzz target defines LLVMFuzzerTestOneInput. In every build it is driven by tests/support/fuzz_main.cpp: the corpus, then
# a fixed number of seeded mutations, as a test. With clang++, MATH_FUZZ links libFuzzer instead, to search for longer:
#     <target> <folder for new finds> <corpus>
include_guard(GLOBAL)

option(MATH_FUZZ "Link the fuzz targets with libFuzzer (clang++ only)" OFF)
if(MATH_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "MATH_FUZZ needs clang++, which brings libFuzzer.")
    endif()
    target_compile_options(math PRIVATE -fsanitize=fuzzer-no-link)
endif()

function(math_add_fuzz_test name)
    cmake_parse_arguments(ARG "" "CORPUS" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE math::math ${ARG_LIBRARIES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR})
    math_compile_options(${name})
    if(MATH_FUZZ)
        target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        add_test(NAME ${name} COMMAND ${name} -runs=20000 -max_total_time=10 -seed=1
            ${CMAKE_CURRENT_BINARY_DIR}/${name}_finds ${ARG_CORPUS})
        file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${name}_finds)
    else()
        target_sources(${name} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/fuzz_main.cpp)
        add_test(NAME ${name} COMMAND ${name} ${ARG_CORPUS})
    endif()
endfunction()
