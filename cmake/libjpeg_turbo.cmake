# Target vrx_libjpeg: libjpeg-turbo. Debian's library natively; for Windows a static one built from Debian's sources.

include_guard(GLOBAL)

add_library(vrx_libjpeg INTERFACE)
if(WIN32)
    include(ExternalProject)
    set(VRX_LIBJPEG_SOURCE "" CACHE PATH "Folder of libjpeg-turbo's sources; fetched when they are not there")
    if(NOT EXISTS ${VRX_LIBJPEG_SOURCE}/jpeglib.h)
        execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/source_package.sh libjpeg-turbo
            OUTPUT_VARIABLE fetched OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        set_property(CACHE VRX_LIBJPEG_SOURCE PROPERTY VALUE ${fetched})
    endif()

    set(built ${PROJECT_BINARY_DIR}/libjpeg-turbo)
    ExternalProject_Add(libjpeg_turbo
        SOURCE_DIR ${VRX_LIBJPEG_SOURCE}
        BINARY_DIR ${built}
        PREFIX ${built}-steps
        CMAKE_ARGS -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE} -DCMAKE_BUILD_TYPE=Release
            -DCMAKE_C_FLAGS=${VRX_HOST_STACK_OPTION} -DCMAKE_INSTALL_PREFIX=${built}/install
            -DENABLE_SHARED=0 -DWITH_TURBOJPEG=0 -DREQUIRE_SIMD=1
        BUILD_COMMAND ${CMAKE_COMMAND} --build <BINARY_DIR> --target jpeg-static
        BUILD_BYPRODUCTS ${built}/libjpeg.a
        INSTALL_COMMAND ""
        LOG_CONFIGURE TRUE LOG_BUILD TRUE LOG_OUTPUT_ON_FAILURE TRUE
        EXCLUDE_FROM_ALL TRUE)
    add_dependencies(vrx_libjpeg libjpeg_turbo)
    target_include_directories(vrx_libjpeg SYSTEM INTERFACE ${VRX_LIBJPEG_SOURCE} ${built})
    target_link_libraries(vrx_libjpeg INTERFACE ${built}/libjpeg.a)
else()
    find_package(JPEG REQUIRED)
    target_link_libraries(vrx_libjpeg INTERFACE JPEG::JPEG)
endif()
