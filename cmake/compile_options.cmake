# Compile options that hold for every target of the project.

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -ffp-contract=off)

if(WIN32)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        # 32-bit hosts call with a stack aligned to 4 bytes only.
        set(VRX_HOST_STACK_OPTION -mstackrealign)
        # SSE2 arithmetic gives the same bits in every build.
        add_compile_options(${VRX_HOST_STACK_OPTION} -msse2 -mfpmath=sse)
        # Exported functions are stdcall, and have their plain names in the .def files.
        add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,--enable-stdcall-fixup>)
    endif()
    add_compile_definitions(UNICODE _UNICODE WINVER=0x0501 _WIN32_WINNT=0x0501 NOMINMAX WIN32_LEAN_AND_MEAN)
    add_link_options(-static)
endif()

if(VRX_TRAPS)
    # A trap is an illegal instruction, so no run-time library is needed. The system's own interfaces give objects of
    # other types than ours (vptr) and data that is not aligned.
    add_compile_options(-fsanitize=undefined -fno-sanitize=vptr,alignment -fsanitize-undefined-trap-on-error)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

if(VRX_FUZZ)
    # fuzzer-no-link adds the coverage counters; each target links libFuzzer itself (fuzz_target.cmake).
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(VRX_SANITIZE OR VRX_FUZZ)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
