# Target vrx_gtest: GoogleTest with its main. Debian's library natively, its sources built by the toolchain for Windows.
# A test program with a main of its own keeps it: the one of the library is then left out by the linker.

include_guard(GLOBAL)

add_library(vrx_gtest INTERFACE)
if(WIN32)
    add_subdirectory(/usr/src/googletest/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    target_compile_options(gtest PRIVATE -w)
    target_compile_options(gtest_main PRIVATE -w)
    target_link_libraries(vrx_gtest INTERFACE gtest_main gtest)
else()
    find_package(GTest REQUIRED)
    target_link_libraries(vrx_gtest INTERFACE GTest::gtest_main GTest::gtest)
endif()
