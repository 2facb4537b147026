# The lines of the library, its headers and its programs that the tests have run, read by gcovr from a build with
# --coverage. The target fails where fewer are covered than ever should be.
find_program(GCOVR gcovr REQUIRED)
set(MATH_COVERAGE_DIR ${PROJECT_BINARY_DIR}/coverage)

# Counts of an earlier build fit no object that was compiled since: programs complain of them where tests read what they
# print.
add_custom_target(forget_counts ALL
    COMMAND find ${PROJECT_BINARY_DIR} -name *.gcda -delete
    COMMENT "Forgetting which lines earlier tests have run" VERBATIM)

add_custom_target(coverage_report
    COMMAND ${CMAKE_COMMAND} -E make_directory ${MATH_COVERAGE_DIR}
    COMMAND ${GCOVR} --root ${PROJECT_SOURCE_DIR} --object-directory ${PROJECT_BINARY_DIR}
        --exclude tests/ --exclude docs/ --exclude build/ --sort-uncovered
        --html-details ${MATH_COVERAGE_DIR}/index.html --txt ${MATH_COVERAGE_DIR}/lines.txt --print-summary
        --fail-under-line 97
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    COMMENT "Line coverage in ${MATH_COVERAGE_DIR}" VERBATIM USES_TERMINAL)
