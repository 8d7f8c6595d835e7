# Target vrx_benchmark: Google Benchmark.
# Debian's library natively; for Windows the sources in VRX_BENCHMARK_SOURCE, without their own search for features.

include_guard(GLOBAL)

add_library(vrx_benchmark INTERFACE)
if(WIN32)
    set(VRX_BENCHMARK_SOURCE "" CACHE PATH "Folder of Google Benchmark's sources")
    file(GLOB sources ${VRX_BENCHMARK_SOURCE}/src/*.cc)
    add_library(benchmark STATIC ${sources})
    target_include_directories(benchmark SYSTEM PUBLIC ${VRX_BENCHMARK_SOURCE}/include)
    target_compile_definitions(benchmark PUBLIC BENCHMARK_STATIC_DEFINE PRIVATE HAVE_STD_REGEX HAVE_STEADY_CLOCK)
    # It calls the system by its narrow names.
    target_compile_options(benchmark PRIVATE -w -UUNICODE -U_UNICODE)
    target_link_libraries(benchmark PUBLIC shlwapi)
    target_link_libraries(vrx_benchmark INTERFACE benchmark)
else()
    find_package(benchmark REQUIRED)
    target_link_libraries(vrx_benchmark INTERFACE benchmark::benchmark)
endif()
