# vrx_add_fuzz_target(NAME SOURCE...) - a libFuzzer program over the engine, bin/fuzz_NAME.

include_guard(GLOBAL)

function(vrx_add_fuzz_target name)
    add_executable(fuzz_${name} ${ARGN})
    target_link_libraries(fuzz_${name} PRIVATE vrx_engine)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
endfunction()
