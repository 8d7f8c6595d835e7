# vrx_add_row_kernels(ENGINE SOURCES...) - inner loops of an engine, once for every processor and once for those with AVX2;
# chosen at run time.

function(vrx_add_row_kernels engine)
    foreach(rows baseline avx2)
        set(kernels ${engine}_rows_${rows})
        add_library(${kernels} OBJECT ${ARGN})
        target_link_libraries(${kernels} PRIVATE vrx_ground)
        target_compile_definitions(${kernels} PRIVATE VRX_ROWS=${rows})
        target_sources(${engine} PRIVATE $<TARGET_OBJECTS:${kernels}>)
    endforeach()
    target_compile_options(${engine}_rows_avx2 PRIVATE -mavx2)
endfunction()
