# Every target of the project: the warnings, and the arithmetic that gives one source the same bits from every compiler.
function(math_compile_options target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow
        $<$<BOOL:${MATH_WARNINGS_AS_ERRORS}>:-Werror>
        -ffp-contract=off)
endfunction()

# The library itself. g++ 12 at -O2 and above drops a double to float to double narrowing of neighbouring values in its
# straight-line vectoriser, so that pass is off there; loops are still vectorised.
function(math_library_options target)
    # Calls within the library may be inlined, and are bound when it is linked: nobody is meant to replace its functions
    # at load time.
    target_compile_options(${target} PRIVATE
        -fno-semantic-interposition
        $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)
    target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
endfunction()
